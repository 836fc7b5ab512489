// Replaced as the folder fills.
