<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="el_GR">
<context>
    <name>CloseButton</name>
    <message>
        <source>Close Tab</source>
        <translation>Κλείσιμο καρτέλας</translation>
    </message>
</context>
<context>
    <name>Print Device Input Slot</name>
    <message>
        <source>Automatic</source>
        <translation>Αυτόματα</translation>
    </message>
</context>
<context>
    <name>Print Device Output Bin</name>
    <message>
        <source>Automatic</source>
        <translation>Αυτόματα</translation>
    </message>
</context>
<context>
    <name>QAbstractFileIconProvider</name>
    <message>
        <source>Alias</source>
        <translation>Ψευδώνυμο</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Μονάδα δίσκου</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Αρχείο</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Φάκελος αρχείων</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Φάκελος</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Συντόμευση</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Άγνωστο</translation>
    </message>
</context>
<context>
    <name>QAbstractSpinBox</name>
    <message>
        <source>&amp;Select All</source>
        <translation>Επιλογή ό&amp;λων</translation>
    </message>
    <message>
        <source>&amp;Step up</source>
        <translation>Α&amp;ύξηση</translation>
    </message>
    <message>
        <source>Step &amp;down</source>
        <translation>&amp;Μείωση</translation>
    </message>
</context>
<context>
    <name>QApplication</name>
    <message>
        <source>Executable &apos;%1&apos; requires Qt %2, found Qt %3.</source>
        <translation>Το πρόγραμμα «%1» χρειάζεται το Qt %2, βρέθηκε το Qt %3.</translation>
    </message>
    <message>
        <source>Incompatible Qt Library Error</source>
        <translation>Ασύμβατη βιβλιοθήκη Qt</translation>
    </message>
</context>
<context>
    <name>QColorDialog</name>
    <message>
        <source>&amp;Add to Custom Colors</source>
        <translation>&amp;Προσθήκη στα προσαρμοσμένα χρώματα</translation>
    </message>
    <message>
        <source>&amp;Basic colors</source>
        <translation>&amp;Βασικά χρώματα</translation>
    </message>
    <message>
        <source>&amp;Custom colors</source>
        <translation>Προσαρ&amp;μοσμένα χρώματα</translation>
    </message>
    <message>
        <source>&amp;Green:</source>
        <translation>&amp;Πράσινο:</translation>
    </message>
    <message>
        <source>&amp;HTML:</source>
        <translation>&amp;HTML:</translation>
    </message>
    <message>
        <source>&amp;Pick Screen Color</source>
        <translation>Λή&amp;ψη χρώματος από την οθόνη</translation>
    </message>
    <message>
        <source>&amp;Red:</source>
        <translation>&amp;Κόκκινο:</translation>
    </message>
    <message>
        <source>&amp;Sat:</source>
        <translation>Κο&amp;ρεσμός:</translation>
    </message>
    <message>
        <source>&amp;Val:</source>
        <translation>&amp;Φωτεινότητα:</translation>
    </message>
    <message>
        <source>A&amp;lpha channel:</source>
        <translation>&amp;Διαφάνεια:</translation>
    </message>
    <message>
        <source>Bl&amp;ue:</source>
        <translation>Μπ&amp;λε:</translation>
    </message>
    <message>
        <source>Cursor at %1, %2
Press ESC to cancel</source>
        <translation>Δείκτης στο %1, %2
Πατήστε ESC για ακύρωση</translation>
    </message>
    <message>
        <source>Cursor at %1, %2, color: %3
Press ESC to cancel</source>
        <translation>Δείκτης στο %1, %2, χρώμα: %3
Πατήστε ESC για ακύρωση</translation>
    </message>
    <message>
        <source>Hu&amp;e:</source>
        <translation>Α&amp;πόχρωση:</translation>
    </message>
    <message>
        <source>Pick Screen Color</source>
        <translation>Λήψη χρώματος από την οθόνη</translation>
    </message>
    <message>
        <source>Select Color</source>
        <translation>Επιλογή χρώματος</translation>
    </message>
</context>
<context>
    <name>QComboBox</name>
    <message>
        <source>False</source>
        <translation>Ψευδές</translation>
    </message>
    <message>
        <source>Open the combo box selection popup</source>
        <translation>Ανοίγει τη λίστα επιλογών</translation>
    </message>
    <message>
        <source>True</source>
        <translation>Αληθές</translation>
    </message>
</context>
<context>
    <name>QCupsJobWidget</name>
    <message>
        <source>Banner Pages</source>
        <translation>Σελίδες διαχωρισμού</translation>
    </message>
    <message>
        <source>Billing information:</source>
        <translation>Στοιχεία χρέωσης:</translation>
    </message>
    <message>
        <source>Classified</source>
        <translation>Διαβαθμισμένο</translation>
    </message>
    <message>
        <source>Confidential</source>
        <translation>Εμπιστευτικό</translation>
    </message>
    <message>
        <source>Day (06:00 to 17:59)</source>
        <translation>Ημέρα (06:00 έως 17:59)</translation>
    </message>
    <message>
        <source>End:</source>
        <translation>Τέλος:</translation>
    </message>
    <message>
        <source>Hold Indefinitely</source>
        <translation>Αναμονή επ&apos; αόριστον</translation>
    </message>
    <message>
        <source>Job</source>
        <translation>Εργασία</translation>
    </message>
    <message>
        <source>Job Control</source>
        <translation>Έλεγχος εργασίας</translation>
    </message>
    <message>
        <source>Job priority:</source>
        <translation>Προτεραιότητα εργασίας:</translation>
    </message>
    <message>
        <source>Night (18:00 to 05:59)</source>
        <translation>Νύχτα (18:00 έως 05:59)</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Καμία</translation>
    </message>
    <message>
        <source>Print Immediately</source>
        <translation>Άμεση εκτύπωση</translation>
    </message>
    <message>
        <source>Scheduled printing:</source>
        <translation>Προγραμματισμένη εκτύπωση:</translation>
    </message>
    <message>
        <source>Second Shift (16:00 to 23:59)</source>
        <translation>Δεύτερη βάρδια (16:00 έως 23:59)</translation>
    </message>
    <message>
        <source>Secret</source>
        <translation>Απόρρητο</translation>
    </message>
    <message>
        <source>Specific Time</source>
        <translation>Συγκεκριμένη ώρα</translation>
    </message>
    <message>
        <source>Standard</source>
        <translation>Τυπική</translation>
    </message>
    <message>
        <source>Start:</source>
        <translation>Αρχή:</translation>
    </message>
    <message>
        <source>Third Shift (00:00 to 07:59)</source>
        <translation>Τρίτη βάρδια (00:00 έως 07:59)</translation>
    </message>
    <message>
        <source>Top Secret</source>
        <translation>Άκρως απόρρητο</translation>
    </message>
    <message>
        <source>Unclassified</source>
        <translation>Αδιαβάθμητο</translation>
    </message>
    <message>
        <source>Weekend (Saturday to Sunday)</source>
        <translation>Σαββατοκύριακο (Σάββατο έως Κυριακή)</translation>
    </message>
</context>
<context>
    <name>QCupsPrinterSupport</name>
    <message>
        <source>Authentication Needed</source>
        <translation>Χρειάζεται πιστοποίηση</translation>
    </message>
    <message>
        <source>Authentication needed to use %1 on %2.</source>
        <translation>Χρειάζεται πιστοποίηση για τη χρήση του %1 στο %2.</translation>
    </message>
    <message>
        <source>Authentication needed to use %1.</source>
        <translation>Χρειάζεται πιστοποίηση για τη χρήση του %1.</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>Κωδικός:</translation>
    </message>
    <message>
        <source>Username:</source>
        <translation>Όνομα χρήστη:</translation>
    </message>
</context>
<context>
    <name>QDialog</name>
    <message>
        <source>What&apos;s This?</source>
        <translation>Τι είναι αυτό;</translation>
    </message>
</context>
<context>
    <name>QDialogButtonBox</name>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Άκυρο</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Κλείσιμο</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>Ό&amp;χι</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;Εντάξει</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Αποθήκευση</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ναι</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Διακοπή</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Εφαρμογή</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Άκυρο</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Κλείσιμο</translation>
    </message>
    <message>
        <source>Close without Saving</source>
        <translation>Κλείσιμο χωρίς αποθήκευση</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Απόρριψη</translation>
    </message>
    <message>
        <source>Don&apos;t Save</source>
        <translation>Χωρίς αποθήκευση</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Βοήθεια</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Παράβλεψη</translation>
    </message>
    <message>
        <source>N&amp;o to All</source>
        <translation>Όχι σε ό&amp;λα</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Εντάξει</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Άνοιγμα</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Επαναφορά</translation>
    </message>
    <message>
        <source>Restore Defaults</source>
        <translation>Επαναφορά προεπιλογών</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Επανάληψη</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Αποθήκευση</translation>
    </message>
    <message>
        <source>Save All</source>
        <translation>Αποθήκευση όλων</translation>
    </message>
    <message>
        <source>Yes to &amp;All</source>
        <translation>Ναι σε ό&amp;λα</translation>
    </message>
</context>
<context>
    <name>QDockWidget</name>
    <message>
        <source>Close</source>
        <translation>Κλείσιμο</translation>
    </message>
    <message>
        <source>Closes the dock widget</source>
        <translation>Κλείνει το πλαίσιο</translation>
    </message>
    <message>
        <source>Float</source>
        <translation>Αποκόλληση</translation>
    </message>
    <message>
        <source>Undocks and re-attaches the dock widget</source>
        <translation>Αποκολλά και επανασυνδέει το πλαίσιο</translation>
    </message>
</context>
<context>
    <name>QErrorMessage</name>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;Εντάξει</translation>
    </message>
    <message>
        <source>&amp;Show this message again</source>
        <translation>&amp;Να ξαναφανεί αυτό το μήνυμα</translation>
    </message>
    <message>
        <source>Critical Error:</source>
        <translation>Κρίσιμο σφάλμα:</translation>
    </message>
    <message>
        <source>Debug Message:</source>
        <translation>Μήνυμα αποσφαλμάτωσης:</translation>
    </message>
    <message>
        <source>Fatal Error:</source>
        <translation>Μοιραίο σφάλμα:</translation>
    </message>
    <message>
        <source>Information:</source>
        <translation>Πληροφορία:</translation>
    </message>
    <message>
        <source>Warning:</source>
        <translation>Προειδοποίηση:</translation>
    </message>
</context>
<context>
    <name>QFileDialog</name>
    <message>
        <source>%1
Directory not found.
Please verify the correct directory name was given.</source>
        <translation>%1
Ο φάκελος δεν βρέθηκε.
Ελέγξτε ότι δώσατε το σωστό όνομα φακέλου.</translation>
    </message>
    <message>
        <source>%1
File not found.
Please verify the correct file name was given.</source>
        <translation>%1
Το αρχείο δεν βρέθηκε.
Ελέγξτε ότι δώσατε το σωστό όνομα αρχείου.</translation>
    </message>
    <message>
        <source>%1 File</source>
        <translation>Αρχείο %1</translation>
    </message>
    <message>
        <source>%1 already exists.
Do you want to replace it?</source>
        <translation>Το %1 υπάρχει ήδη.
Θέλετε να το αντικαταστήσετε;</translation>
    </message>
    <message>
        <source>&amp;Choose</source>
        <translation>&amp;Επιλογή</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Διαγραφή</translation>
    </message>
    <message>
        <source>&amp;New Folder</source>
        <translation>&amp;Νέος φάκελος</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ά&amp;νοιγμα</translation>
    </message>
    <message>
        <source>&amp;Rename</source>
        <translation>&amp;Μετονομασία</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Αποθήκευση</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is write protected.
Do you want to delete it anyway?</source>
        <translation>Το «%1» προστατεύεται από εγγραφή.
Να διαγραφεί παρ&apos; όλα αυτά;</translation>
    </message>
    <message>
        <source>Alias</source>
        <translation>Ψευδώνυμο</translation>
    </message>
    <message>
        <source>Alias</source>
        <comment>Mac OS X Finder</comment>
        <translation>Ψευδώνυμο</translation>
    </message>
    <message>
        <source>All Files (*)</source>
        <translation>Όλα τα αρχεία (*)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Όλα τα αρχεία (*)</translation>
    </message>
    <message>
        <source>Alt+Left</source>
        <translation>Alt+Left</translation>
    </message>
    <message>
        <source>Alt+Right</source>
        <translation>Alt+Right</translation>
    </message>
    <message>
        <source>Alt+Up</source>
        <translation>Alt+Up</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;?</source>
        <translation>Είστε βέβαιοι ότι θέλετε να διαγράψετε το «%1»;</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Πίσω</translation>
    </message>
    <message>
        <source>Change to detail view mode</source>
        <translation>Αλλαγή σε προβολή λεπτομερειών</translation>
    </message>
    <message>
        <source>Change to list view mode</source>
        <translation>Αλλαγή σε προβολή λίστας</translation>
    </message>
    <message>
        <source>Could not delete directory.</source>
        <translation>Ο φάκελος δεν ήταν δυνατό να διαγραφεί.</translation>
    </message>
    <message>
        <source>Create New Folder</source>
        <translation>Δημιουργία νέου φακέλου</translation>
    </message>
    <message>
        <source>Create a New Folder</source>
        <translation>Δημιουργία νέου φακέλου</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Διαγραφή</translation>
    </message>
    <message>
        <source>Detail View</source>
        <translation>Προβολή λεπτομερειών</translation>
    </message>
    <message>
        <source>Directories</source>
        <translation>Φάκελοι</translation>
    </message>
    <message>
        <source>Directory:</source>
        <translation>Φάκελος:</translation>
    </message>
    <message>
        <source>Drive</source>
        <translation>Μονάδα δίσκου</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Αρχείο</translation>
    </message>
    <message>
        <source>File &amp;name:</source>
        <translation>Όνομα &amp;αρχείου:</translation>
    </message>
    <message>
        <source>File Folder</source>
        <translation>Φάκελος αρχείων</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Αρχεία</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>Αρχεία τύπου:</translation>
    </message>
    <message>
        <source>Find Directory</source>
        <translation>Εύρεση φακέλου</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>Φάκελος</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Εμπρός</translation>
    </message>
    <message>
        <source>Go back</source>
        <translation>Μετάβαση πίσω</translation>
    </message>
    <message>
        <source>Go forward</source>
        <translation>Μετάβαση εμπρός</translation>
    </message>
    <message>
        <source>Go to the parent directory</source>
        <translation>Μετάβαση στον γονικό φάκελο</translation>
    </message>
    <message>
        <source>List View</source>
        <translation>Προβολή λίστας</translation>
    </message>
    <message>
        <source>List of places and bookmarks</source>
        <translation>Θέσεις και σελιδοδείκτες</translation>
    </message>
    <message>
        <source>Look in:</source>
        <translation>Αναζήτηση σε:</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Ο υπολογιστής μου</translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation>Νέος φάκελος</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Άνοιγμα</translation>
    </message>
    <message>
        <source>Parent Directory</source>
        <translation>Γονικός φάκελος</translation>
    </message>
    <message>
        <source>Recent Places</source>
        <translation>Πρόσφατες θέσεις</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Αφαίρεση</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Αποθήκευση ως</translation>
    </message>
    <message>
        <source>Shortcut</source>
        <translation>Συντόμευση</translation>
    </message>
    <message>
        <source>Show </source>
        <translation>Εμφάνιση </translation>
    </message>
    <message>
        <source>Show &amp;hidden files</source>
        <translation>Εμφάνιση &amp;κρυφών αρχείων</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Πλευρική στήλη</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Άγνωστο</translation>
    </message>
</context>
<context>
    <name>QFileSystemModel</name>
    <message>
        <source>%1 GB</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>%1 KB</source>
        <translation>%1 KB</translation>
    </message>
    <message>
        <source>%1 MB</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 TB</source>
        <translation>%1 TB</translation>
    </message>
    <message>
        <source>%1 byte(s)</source>
        <translation>%1 byte</translation>
    </message>
    <message>
        <source>%1 bytes</source>
        <translation>%1 byte</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; can not be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuations marks.</source>
        <translation>&lt;b&gt;Το όνομα «%1» δεν μπορεί να χρησιμοποιηθεί.&lt;/b&gt;&lt;p&gt;Δοκιμάστε άλλο όνομα, με λιγότερους χαρακτήρες ή χωρίς σημεία στίξης.</translation>
    </message>
    <message>
        <source>&lt;b&gt;The name &quot;%1&quot; cannot be used.&lt;/b&gt;&lt;p&gt;Try using another name, with fewer characters or no punctuation marks.</source>
        <translation>&lt;b&gt;Το όνομα «%1» δεν μπορεί να χρησιμοποιηθεί.&lt;/b&gt;&lt;p&gt;Δοκιμάστε άλλο όνομα, με λιγότερους χαρακτήρες ή χωρίς σημεία στίξης.</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Υπολογιστής</translation>
    </message>
    <message>
        <source>Date Modified</source>
        <translation>Ημερομηνία τροποποίησης</translation>
    </message>
    <message>
        <source>Invalid filename</source>
        <translation>Μη έγκυρο όνομα αρχείου</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Είδος</translation>
    </message>
    <message>
        <source>My Computer</source>
        <translation>Ο υπολογιστής μου</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Όνομα</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Μέγεθος</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Τύπος</translation>
    </message>
</context>
<context>
    <name>QFontDatabase</name>
    <message>
        <source>Any</source>
        <translation>Οποιοδήποτε</translation>
    </message>
    <message>
        <source>Arabic</source>
        <translation>Αραβικά</translation>
    </message>
    <message>
        <source>Armenian</source>
        <translation>Αρμενικά</translation>
    </message>
    <message>
        <source>Bengali</source>
        <translation>Βεγγαλικά</translation>
    </message>
    <message>
        <source>Black</source>
        <translation>Πολύ έντονα</translation>
    </message>
    <message>
        <source>Bold</source>
        <translation>Έντονα</translation>
    </message>
    <message>
        <source>Cyrillic</source>
        <translation>Κυριλλικά</translation>
    </message>
    <message>
        <source>Demi</source>
        <translation>Ημι</translation>
    </message>
    <message>
        <source>Demi Bold</source>
        <translation>Ημιέντονα</translation>
    </message>
    <message>
        <source>Devanagari</source>
        <translation>Ντεβαναγκάρι</translation>
    </message>
    <message>
        <source>Extra</source>
        <translation>Πολύ</translation>
    </message>
    <message>
        <source>Extra Bold</source>
        <translation>Πολύ έντονα</translation>
    </message>
    <message>
        <source>Extra Light</source>
        <translation>Πολύ ανοιχτά</translation>
    </message>
    <message>
        <source>Georgian</source>
        <translation>Γεωργιανά</translation>
    </message>
    <message>
        <source>Greek</source>
        <translation>Ελληνικά</translation>
    </message>
    <message>
        <source>Gujarati</source>
        <translation>Γκουτζαράτι</translation>
    </message>
    <message>
        <source>Gurmukhi</source>
        <translation>Γκουρμούκι</translation>
    </message>
    <message>
        <source>Hebrew</source>
        <translation>Εβραϊκά</translation>
    </message>
    <message>
        <source>Italic</source>
        <translation>Πλάγια</translation>
    </message>
    <message>
        <source>Japanese</source>
        <translation>Ιαπωνικά</translation>
    </message>
    <message>
        <source>Kannada</source>
        <translation>Κανάντα</translation>
    </message>
    <message>
        <source>Khmer</source>
        <translation>Χμερ</translation>
    </message>
    <message>
        <source>Korean</source>
        <translation>Κορεατικά</translation>
    </message>
    <message>
        <source>Lao</source>
        <translation>Λάο</translation>
    </message>
    <message>
        <source>Latin</source>
        <translation>Λατινικά</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Ανοιχτά</translation>
    </message>
    <message>
        <source>Malayalam</source>
        <translation>Μαλαγιαλάμ</translation>
    </message>
    <message>
        <source>Medium</source>
        <translation>Μεσαία</translation>
    </message>
    <message>
        <source>Myanmar</source>
        <translation>Μιανμάρ</translation>
    </message>
    <message>
        <source>N&apos;Ko</source>
        <translation>Ν&apos;Κο</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Κανονικά</translation>
    </message>
    <message>
        <source>Normal</source>
        <comment>The Normal or Regular font weight</comment>
        <translation>Κανονικά</translation>
    </message>
    <message>
        <source>Oblique</source>
        <translation>Κεκλιμένα</translation>
    </message>
    <message>
        <source>Ogham</source>
        <translation>Όγχαμ</translation>
    </message>
    <message>
        <source>Oriya</source>
        <translation>Ορίγια</translation>
    </message>
    <message>
        <source>Runic</source>
        <translation>Ρουνικά</translation>
    </message>
    <message>
        <source>Simplified Chinese</source>
        <translation>Απλοποιημένα κινεζικά</translation>
    </message>
    <message>
        <source>Sinhala</source>
        <translation>Σινχάλα</translation>
    </message>
    <message>
        <source>Symbol</source>
        <translation>Σύμβολα</translation>
    </message>
    <message>
        <source>Syriac</source>
        <translation>Συριακά</translation>
    </message>
    <message>
        <source>Tamil</source>
        <translation>Ταμιλικά</translation>
    </message>
    <message>
        <source>Telugu</source>
        <translation>Τελούγκου</translation>
    </message>
    <message>
        <source>Thaana</source>
        <translation>Θαάνα</translation>
    </message>
    <message>
        <source>Thai</source>
        <translation>Ταϊλανδικά</translation>
    </message>
    <message>
        <source>Thin</source>
        <translation>Λεπτά</translation>
    </message>
    <message>
        <source>Tibetan</source>
        <translation>Θιβετιανά</translation>
    </message>
    <message>
        <source>Traditional Chinese</source>
        <translation>Παραδοσιακά κινεζικά</translation>
    </message>
    <message>
        <source>Vietnamese</source>
        <translation>Βιετναμικά</translation>
    </message>
</context>
<context>
    <name>QFontDialog</name>
    <message>
        <source>&amp;Font</source>
        <translation>&amp;Γραμματοσειρά</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>&amp;Μέγεθος</translation>
    </message>
    <message>
        <source>&amp;Underline</source>
        <translation>&amp;Υπογράμμιση</translation>
    </message>
    <message>
        <source>Effects</source>
        <translation>Εφέ</translation>
    </message>
    <message>
        <source>Font st&amp;yle</source>
        <translation>&amp;Στυλ γραμματοσειράς</translation>
    </message>
    <message>
        <source>Sample</source>
        <translation>Δείγμα</translation>
    </message>
    <message>
        <source>Select Font</source>
        <translation>Επιλογή γραμματοσειράς</translation>
    </message>
    <message>
        <source>Stri&amp;keout</source>
        <translation>&amp;Διακριτή διαγραφή</translation>
    </message>
    <message>
        <source>Wr&amp;iting System</source>
        <translation>Σύστημα γρα&amp;φής</translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Άκυρο</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Κλείσιμο</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;Εντάξει</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Αποθήκευση</translation>
    </message>
    <message>
        <source>Close without Saving</source>
        <translation>Κλείσιμο χωρίς αποθήκευση</translation>
    </message>
</context>
<context>
    <name>QInputDialog</name>
    <message>
        <source>Enter a value:</source>
        <translation>Δώστε μια τιμή:</translation>
    </message>
</context>
<context>
    <name>QKeySequenceEdit</name>
    <message>
        <source>%1, ...</source>
        <translation>%1, ...</translation>
    </message>
    <message>
        <source>Press shortcut</source>
        <translation>Πατήστε συντόμευση</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Copy</source>
        <translation>Α&amp;ντιγραφή</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Επικόλληση</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Ακύρωση α&amp;ναίρεσης</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Αναίρεση</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Απο&amp;κοπή</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Διαγραφή</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Επιλογή όλων</translation>
    </message>
</context>
<context>
    <name>QMdiArea</name>
    <message>
        <source>(Untitled)</source>
        <translation>(Χωρίς τίτλο)</translation>
    </message>
</context>
<context>
    <name>QMdiSubWindow</name>
    <message>
        <source>%1 - [%2]</source>
        <translation>%1 - [%2]</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Κλείσιμο</translation>
    </message>
    <message>
        <source>&amp;Move</source>
        <translation>&amp;Μετακίνηση</translation>
    </message>
    <message>
        <source>&amp;Restore</source>
        <translation>Επα&amp;ναφορά</translation>
    </message>
    <message>
        <source>&amp;Size</source>
        <translation>Μέ&amp;γεθος</translation>
    </message>
    <message>
        <source>- [%1]</source>
        <translation>- [%1]</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Κλείσιμο</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Βοήθεια</translation>
    </message>
    <message>
        <source>Ma&amp;ximize</source>
        <translation>Με&amp;γιστοποίηση</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>Μεγιστοποίηση</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Μενού</translation>
    </message>
    <message>
        <source>Mi&amp;nimize</source>
        <translation>Ελα&amp;χιστοποίηση</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Ελαχιστοποίηση</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Επαναφορά</translation>
    </message>
    <message>
        <source>Restore Down</source>
        <translation>Επαναφορά</translation>
    </message>
    <message>
        <source>Shade</source>
        <translation>Τύλιγμα</translation>
    </message>
    <message>
        <source>Stay on &amp;Top</source>
        <translation>Πάντα σε &amp;πρώτο πλάνο</translation>
    </message>
    <message>
        <source>Unshade</source>
        <translation>Ξετύλιγμα</translation>
    </message>
</context>
<context>
    <name>QMessageBox</name>
    <message>
        <source>&lt;h3&gt;About Qt&lt;/h3&gt;&lt;p&gt;This program uses Qt version %1.&lt;/p&gt;</source>
        <translation>&lt;h3&gt;Σχετικά με το Qt&lt;/h3&gt;&lt;p&gt;Αυτό το πρόγραμμα χρησιμοποιεί το Qt, έκδοση %1.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>About Qt</source>
        <translation>Σχετικά με το Qt</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Βοήθεια</translation>
    </message>
    <message>
        <source>Hide Details...</source>
        <translation>Απόκρυψη λεπτομερειών...</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Εντάξει</translation>
    </message>
    <message>
        <source>Show Details...</source>
        <translation>Εμφάνιση λεπτομερειών...</translation>
    </message>
</context>
<context>
    <name>QPageSetupWidget</name>
    <message>
        <source>CC</source>
        <translation>CC</translation>
    </message>
    <message>
        <source>Centimeters (cm)</source>
        <translation>Εκατοστά (cm)</translation>
    </message>
    <message>
        <source>Cicero (CC)</source>
        <translation>Cicero (CC)</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Προσαρμοσμένο</translation>
    </message>
    <message>
        <source>DD</source>
        <translation>DD</translation>
    </message>
    <message>
        <source>Didot (DD)</source>
        <translation>Didot (DD)</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Φόρμα</translation>
    </message>
    <message>
        <source>Height:</source>
        <translation>Ύψος:</translation>
    </message>
    <message>
        <source>Inches (in)</source>
        <translation>Ίντσες (in)</translation>
    </message>
    <message>
        <source>Landscape</source>
        <translation>Οριζόντιος</translation>
    </message>
    <message>
        <source>Margins</source>
        <translation>Περιθώρια</translation>
    </message>
    <message>
        <source>Millimeters (mm)</source>
        <translation>Χιλιοστά (mm)</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Προσανατολισμός</translation>
    </message>
    <message>
        <source>Page Layout</source>
        <translation>Διάταξη σελίδας</translation>
    </message>
    <message>
        <source>Page order:</source>
        <translation>Σειρά σελίδων:</translation>
    </message>
    <message>
        <source>Page size:</source>
        <translation>Μέγεθος σελίδας:</translation>
    </message>
    <message>
        <source>Pages per sheet:</source>
        <translation>Σελίδες ανά φύλλο:</translation>
    </message>
    <message>
        <source>Paper</source>
        <translation>Χαρτί</translation>
    </message>
    <message>
        <source>Paper source:</source>
        <translation>Τροφοδοσία χαρτιού:</translation>
    </message>
    <message>
        <source>Pica (P̸)</source>
        <translation>Πίκα (P̸)</translation>
    </message>
    <message>
        <source>Points (pt)</source>
        <translation>Στιγμές (pt)</translation>
    </message>
    <message>
        <source>Portrait</source>
        <translation>Κατακόρυφος</translation>
    </message>
    <message>
        <source>P̸</source>
        <translation>P̸</translation>
    </message>
    <message>
        <source>Reverse landscape</source>
        <translation>Αντεστραμμένος οριζόντιος</translation>
    </message>
    <message>
        <source>Reverse portrait</source>
        <translation>Αντεστραμμένος κατακόρυφος</translation>
    </message>
    <message>
        <source>Width:</source>
        <translation>Πλάτος:</translation>
    </message>
    <message>
        <source>bottom margin</source>
        <translation>κάτω περιθώριο</translation>
    </message>
    <message>
        <source>in</source>
        <translation>ίντσ.</translation>
    </message>
    <message>
        <source>left margin</source>
        <translation>αριστερό περιθώριο</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>pt</source>
        <translation>pt</translation>
    </message>
    <message>
        <source>right margin</source>
        <translation>δεξί περιθώριο</translation>
    </message>
    <message>
        <source>top margin</source>
        <translation>πάνω περιθώριο</translation>
    </message>
</context>
<context>
    <name>QPageSize</name>
    <message>
        <source>%1 x %2 in</source>
        <translation>%1 x %2 in</translation>
    </message>
    <message>
        <source>A4 Small</source>
        <translation>A4 μικρό</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Προσαρμοσμένο</translation>
    </message>
    <message>
        <source>Custom (%1CC x %2CC)</source>
        <translation>Προσαρμοσμένο (%1CC x %2CC)</translation>
    </message>
    <message>
        <source>Custom (%1DD x %2DD)</source>
        <translation>Προσαρμοσμένο (%1DD x %2DD)</translation>
    </message>
    <message>
        <source>Custom (%1in x %2in)</source>
        <translation>Προσαρμοσμένο (%1in x %2in)</translation>
    </message>
    <message>
        <source>Custom (%1mm x %2mm)</source>
        <translation>Προσαρμοσμένο (%1mm x %2mm)</translation>
    </message>
    <message>
        <source>Custom (%1pc x %2pc)</source>
        <translation>Προσαρμοσμένο (%1pc x %2pc)</translation>
    </message>
    <message>
        <source>Custom (%1pt x %2pt)</source>
        <translation>Προσαρμοσμένο (%1pt x %2pt)</translation>
    </message>
    <message>
        <source>Double Postcard</source>
        <translation>Διπλή καρτ ποστάλ</translation>
    </message>
    <message>
        <source>Envelope B4</source>
        <translation>Φάκελος B4</translation>
    </message>
    <message>
        <source>Envelope B5</source>
        <translation>Φάκελος B5</translation>
    </message>
    <message>
        <source>Envelope B6</source>
        <translation>Φάκελος B6</translation>
    </message>
    <message>
        <source>Envelope C0</source>
        <translation>Φάκελος C0</translation>
    </message>
    <message>
        <source>Envelope C1</source>
        <translation>Φάκελος C1</translation>
    </message>
    <message>
        <source>Envelope C2</source>
        <translation>Φάκελος C2</translation>
    </message>
    <message>
        <source>Envelope C3</source>
        <translation>Φάκελος C3</translation>
    </message>
    <message>
        <source>Envelope C4</source>
        <translation>Φάκελος C4</translation>
    </message>
    <message>
        <source>Envelope C5</source>
        <translation>Φάκελος C5</translation>
    </message>
    <message>
        <source>Envelope C6</source>
        <translation>Φάκελος C6</translation>
    </message>
    <message>
        <source>Envelope C65</source>
        <translation>Φάκελος C65</translation>
    </message>
    <message>
        <source>Envelope C7</source>
        <translation>Φάκελος C7</translation>
    </message>
    <message>
        <source>Envelope Chou 3</source>
        <translation>Φάκελος Chou 3</translation>
    </message>
    <message>
        <source>Envelope Chou 4</source>
        <translation>Φάκελος Chou 4</translation>
    </message>
    <message>
        <source>Envelope DL</source>
        <translation>Φάκελος DL</translation>
    </message>
    <message>
        <source>Envelope Invite</source>
        <translation>Φάκελος πρόσκλησης</translation>
    </message>
    <message>
        <source>Envelope Italian</source>
        <translation>Φάκελος ιταλικός</translation>
    </message>
    <message>
        <source>Envelope Kaku 2</source>
        <translation>Φάκελος Kaku 2</translation>
    </message>
    <message>
        <source>Envelope Kaku 3</source>
        <translation>Φάκελος Kaku 3</translation>
    </message>
    <message>
        <source>Envelope Monarch</source>
        <translation>Φάκελος Monarch</translation>
    </message>
    <message>
        <source>Envelope PRC 1</source>
        <translation>Φάκελος PRC 1</translation>
    </message>
    <message>
        <source>Envelope PRC 10</source>
        <translation>Φάκελος PRC 10</translation>
    </message>
    <message>
        <source>Envelope PRC 2</source>
        <translation>Φάκελος PRC 2</translation>
    </message>
    <message>
        <source>Envelope PRC 3</source>
        <translation>Φάκελος PRC 3</translation>
    </message>
    <message>
        <source>Envelope PRC 4</source>
        <translation>Φάκελος PRC 4</translation>
    </message>
    <message>
        <source>Envelope PRC 5</source>
        <translation>Φάκελος PRC 5</translation>
    </message>
    <message>
        <source>Envelope PRC 6</source>
        <translation>Φάκελος PRC 6</translation>
    </message>
    <message>
        <source>Envelope PRC 7</source>
        <translation>Φάκελος PRC 7</translation>
    </message>
    <message>
        <source>Envelope PRC 8</source>
        <translation>Φάκελος PRC 8</translation>
    </message>
    <message>
        <source>Envelope PRC 9</source>
        <translation>Φάκελος PRC 9</translation>
    </message>
    <message>
        <source>Envelope Personal</source>
        <translation>Φάκελος προσωπικός</translation>
    </message>
    <message>
        <source>Envelope US 10</source>
        <translation>Φάκελος US 10</translation>
    </message>
    <message>
        <source>Envelope US 11</source>
        <translation>Φάκελος US 11</translation>
    </message>
    <message>
        <source>Envelope US 12</source>
        <translation>Φάκελος US 12</translation>
    </message>
    <message>
        <source>Envelope US 14</source>
        <translation>Φάκελος US 14</translation>
    </message>
    <message>
        <source>Envelope US 9</source>
        <translation>Φάκελος US 9</translation>
    </message>
    <message>
        <source>Envelope You 4</source>
        <translation>Φάκελος You 4</translation>
    </message>
    <message>
        <source>Executive (7.25 x 10.5 in)</source>
        <translation>Executive (7.25 x 10.5 in)</translation>
    </message>
    <message>
        <source>Executive (7.5 x 10 in)</source>
        <translation>Executive (7.5 x 10 in)</translation>
    </message>
    <message>
        <source>Fan-fold German (8.5 x 12 in)</source>
        <translation>Συνεχές χαρτί γερμανικό (8.5 x 12 in)</translation>
    </message>
    <message>
        <source>Fan-fold German Legal (8.5 x 13 in)</source>
        <translation>Συνεχές χαρτί γερμανικό Legal (8.5 x 13 in)</translation>
    </message>
    <message>
        <source>Fan-fold US (14.875 x 11 in)</source>
        <translation>Συνεχές χαρτί US (14.875 x 11 in)</translation>
    </message>
    <message>
        <source>Folio (8.27 x 13 in)</source>
        <translation>Folio (8.27 x 13 in)</translation>
    </message>
    <message>
        <source>Letter Small</source>
        <translation>Letter μικρό</translation>
    </message>
    <message>
        <source>PRC 32K Big</source>
        <translation>PRC 32K μεγάλο</translation>
    </message>
    <message>
        <source>Postcard</source>
        <translation>Καρτ ποστάλ</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>&amp;No</source>
        <translation>Ό&amp;χι</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ναι</translation>
    </message>
    <message>
        <source>Abort</source>
        <translation>Διακοπή</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Εφαρμογή</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Άκυρο</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Κλείσιμο</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Απόρριψη</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Βοήθεια</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Παράβλεψη</translation>
    </message>
    <message>
        <source>N&amp;o to All</source>
        <translation>Όχι σε ό&amp;λα</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Εντάξει</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Άνοιγμα</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Επαναφορά</translation>
    </message>
    <message>
        <source>Restore Defaults</source>
        <translation>Επαναφορά προεπιλογών</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Επανάληψη</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Αποθήκευση</translation>
    </message>
    <message>
        <source>Save All</source>
        <translation>Αποθήκευση όλων</translation>
    </message>
    <message>
        <source>Yes to &amp;All</source>
        <translation>Ναι σε ό&amp;λα</translation>
    </message>
</context>
<context>
    <name>QPrintDialog</name>
    <message>
        <source>%1 already exists.
Do you want to overwrite it?</source>
        <translation>Το %1 υπάρχει ήδη.
Θέλετε να αντικατασταθεί;</translation>
    </message>
    <message>
        <source>%1 does not follow the correct syntax. Please use &apos;,&apos; to separate ranges and pages, &apos;-&apos; to define ranges and make sure ranges do not intersect with each other.</source>
        <translation>Το %1 δεν είναι γραμμένο σωστά. Χωρίστε σελίδες και περιοχές με &apos;,&apos;, ορίστε περιοχές με &apos;-&apos; και φροντίστε οι περιοχές να μην επικαλύπτονται.</translation>
    </message>
    <message>
        <source>%1 is a directory.
Please choose a different file name.</source>
        <translation>Το %1 είναι φάκελος.
Επιλέξτε άλλο όνομα αρχείου.</translation>
    </message>
    <message>
        <source>&amp;Options &lt;&lt;</source>
        <translation>&amp;Επιλογές &lt;&lt;</translation>
    </message>
    <message>
        <source>&amp;Options &gt;&gt;</source>
        <translation>&amp;Επιλογές &gt;&gt;</translation>
    </message>
    <message>
        <source>&amp;Print</source>
        <translation>&amp;Εκτύπωση</translation>
    </message>
    <message>
        <source>1 (1x1)</source>
        <translation>1 (1x1)</translation>
    </message>
    <message>
        <source>16 (4x4)</source>
        <translation>16 (4x4)</translation>
    </message>
    <message>
        <source>2 (2x1)</source>
        <translation>2 (2x1)</translation>
    </message>
    <message>
        <source>4 (2x2)</source>
        <translation>4 (2x2)</translation>
    </message>
    <message>
        <source>6 (2x3)</source>
        <translation>6 (2x3)</translation>
    </message>
    <message>
        <source>9 (3x3)</source>
        <translation>9 (3x3)</translation>
    </message>
    <message>
        <source>All Pages</source>
        <translation>Όλες οι σελίδες</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Αυτόματα</translation>
    </message>
    <message>
        <source>Bottom to Top, Left to Right</source>
        <translation>Κάτω προς πάνω, αριστερά προς δεξιά</translation>
    </message>
    <message>
        <source>Bottom to Top, Right to Left</source>
        <translation>Κάτω προς πάνω, δεξιά προς αριστερά</translation>
    </message>
    <message>
        <source>C5E</source>
        <translation>C5E</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Προσαρμοσμένο</translation>
    </message>
    <message>
        <source>DLE</source>
        <translation>DLE</translation>
    </message>
    <message>
        <source>Duplex Settings Conflicts</source>
        <translation>Σύγκρουση ρυθμίσεων διπλής όψης</translation>
    </message>
    <message>
        <source>Even Pages</source>
        <translation>Ζυγές σελίδες</translation>
    </message>
    <message>
        <source>Executive</source>
        <translation>Executive</translation>
    </message>
    <message>
        <source>File %1 is not writable.
Please choose a different file name.</source>
        <translation>Στο αρχείο %1 δεν επιτρέπεται η εγγραφή.
Επιλέξτε άλλο όνομα αρχείου.</translation>
    </message>
    <message>
        <source>Folio</source>
        <translation>Folio</translation>
    </message>
    <message>
        <source>Invalid Pages Definition</source>
        <translation>Μη έγκυρος ορισμός σελίδων</translation>
    </message>
    <message>
        <source>Ledger</source>
        <translation>Ledger</translation>
    </message>
    <message>
        <source>Left to Right, Bottom to Top</source>
        <translation>Αριστερά προς δεξιά, κάτω προς πάνω</translation>
    </message>
    <message>
        <source>Left to Right, Top to Bottom</source>
        <translation>Αριστερά προς δεξιά, πάνω προς κάτω</translation>
    </message>
    <message>
        <source>Legal</source>
        <translation>Legal</translation>
    </message>
    <message>
        <source>Letter</source>
        <translation>Letter</translation>
    </message>
    <message>
        <source>Local file</source>
        <translation>Τοπικό αρχείο</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Εντάξει</translation>
    </message>
    <message>
        <source>Odd Pages</source>
        <translation>Μονές σελίδες</translation>
    </message>
    <message>
        <source>Options &apos;Pages Per Sheet&apos; and &apos;Page Set&apos; cannot be used together.
Please turn one of those options off.</source>
        <translation>Οι επιλογές «Σελίδες ανά φύλλο» και «Σύνολο σελίδων» δεν μπορούν να χρησιμοποιηθούν μαζί.
Απενεργοποιήστε τη μία από τις δύο.</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Εκτύπωση</translation>
    </message>
    <message>
        <source>Print To File ...</source>
        <translation>Εκτύπωση σε αρχείο ...</translation>
    </message>
    <message>
        <source>Print to File (PDF)</source>
        <translation>Εκτύπωση σε αρχείο (PDF)</translation>
    </message>
    <message>
        <source>Right to Left, Bottom to Top</source>
        <translation>Δεξιά προς αριστερά, κάτω προς πάνω</translation>
    </message>
    <message>
        <source>Right to Left, Top to Bottom</source>
        <translation>Δεξιά προς αριστερά, πάνω προς κάτω</translation>
    </message>
    <message>
        <source>Tabloid</source>
        <translation>Tabloid</translation>
    </message>
    <message>
        <source>The &apos;From&apos; value cannot be greater than the &apos;To&apos; value.</source>
        <translation>Η τιμή «Από» δεν μπορεί να είναι μεγαλύτερη από την τιμή «Έως».</translation>
    </message>
    <message>
        <source>There are conflicts in duplex settings. Do you want to fix them?</source>
        <translation>Οι ρυθμίσεις διπλής όψης συγκρούονται. Θέλετε να τις διορθώσετε;</translation>
    </message>
    <message>
        <source>Top to Bottom, Left to Right</source>
        <translation>Πάνω προς κάτω, αριστερά προς δεξιά</translation>
    </message>
    <message>
        <source>Top to Bottom, Right to Left</source>
        <translation>Πάνω προς κάτω, δεξιά προς αριστερά</translation>
    </message>
    <message>
        <source>US Common #10 Envelope</source>
        <translation>Φάκελος US #10</translation>
    </message>
    <message>
        <source>Write PDF file</source>
        <translation>Εγγραφή αρχείου PDF</translation>
    </message>
</context>
<context>
    <name>QPrintPreviewDialog</name>
    <message>
        <source>%1%</source>
        <translation>%1%</translation>
    </message>
    <message>
        <source>Export to PDF</source>
        <translation>Εξαγωγή σε PDF</translation>
    </message>
    <message>
        <source>Export to PostScript</source>
        <translation>Εξαγωγή σε PostScript</translation>
    </message>
    <message>
        <source>First page</source>
        <translation>Πρώτη σελίδα</translation>
    </message>
    <message>
        <source>Fit page</source>
        <translation>Προσαρμογή στη σελίδα</translation>
    </message>
    <message>
        <source>Fit width</source>
        <translation>Προσαρμογή στο πλάτος</translation>
    </message>
    <message>
        <source>Landscape</source>
        <translation>Οριζόντια</translation>
    </message>
    <message>
        <source>Last page</source>
        <translation>Τελευταία σελίδα</translation>
    </message>
    <message>
        <source>Next page</source>
        <translation>Επόμενη σελίδα</translation>
    </message>
    <message>
        <source>Page Setup</source>
        <translation>Διαμόρφωση σελίδας</translation>
    </message>
    <message>
        <source>Page setup</source>
        <translation>Διαμόρφωση σελίδας</translation>
    </message>
    <message>
        <source>Portrait</source>
        <translation>Κατακόρυφα</translation>
    </message>
    <message>
        <source>Previous page</source>
        <translation>Προηγούμενη σελίδα</translation>
    </message>
    <message>
        <source>Print</source>
        <translation>Εκτύπωση</translation>
    </message>
    <message>
        <source>Print Preview</source>
        <translation>Προεπισκόπηση εκτύπωσης</translation>
    </message>
    <message>
        <source>Show facing pages</source>
        <translation>Αντικριστές σελίδες</translation>
    </message>
    <message>
        <source>Show overview of all pages</source>
        <translation>Επισκόπηση όλων των σελίδων</translation>
    </message>
    <message>
        <source>Show single page</source>
        <translation>Μία σελίδα</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Μεγέθυνση</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Σμίκρυνση</translation>
    </message>
</context>
<context>
    <name>QPrintPropertiesDialog</name>
    <message>
        <source>Advanced Option Conflicts</source>
        <translation>Σύγκρουση επιλογών για προχωρημένους</translation>
    </message>
    <message>
        <source>Job Options</source>
        <translation>Επιλογές εργασίας</translation>
    </message>
    <message>
        <source>Page Setup Conflicts</source>
        <translation>Σύγκρουση ρυθμίσεων σελίδας</translation>
    </message>
    <message>
        <source>Printer Properties</source>
        <translation>Ιδιότητες εκτυπωτή</translation>
    </message>
    <message>
        <source>There are conflicts in page setup options. Do you want to fix them?</source>
        <translation>Κάποιες ρυθμίσεις σελίδας συγκρούονται. Θέλετε να τις διορθώσετε;</translation>
    </message>
    <message>
        <source>There are conflicts in some advanced options. Do you want to fix them?</source>
        <translation>Κάποιες επιλογές για προχωρημένους συγκρούονται. Θέλετε να τις διορθώσετε;</translation>
    </message>
</context>
<context>
    <name>QPrintPropertiesWidget</name>
    <message>
        <source>Advanced</source>
        <translation>Για προχωρημένους</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Φόρμα</translation>
    </message>
    <message>
        <source>Page</source>
        <translation>Σελίδα</translation>
    </message>
    <message>
        <source>There are conflicts in some options. Please fix them.</source>
        <translation>Κάποιες επιλογές συγκρούονται. Διορθώστε τις.</translation>
    </message>
</context>
<context>
    <name>QPrintSettingsOutput</name>
    <message>
        <source>Collate</source>
        <translation>Συρραφή αντιτύπων</translation>
    </message>
    <message>
        <source>Color</source>
        <translation>Έγχρωμη</translation>
    </message>
    <message>
        <source>Color Mode</source>
        <translation>Χρώμα</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>Αντίτυπα</translation>
    </message>
    <message>
        <source>Copies:</source>
        <translation>Αντίτυπα:</translation>
    </message>
    <message>
        <source>Current Page</source>
        <translation>Τρέχουσα σελίδα</translation>
    </message>
    <message>
        <source>Double Sided Printing</source>
        <translation>Εκτύπωση διπλής όψης</translation>
    </message>
    <message>
        <source>Duplex Printing</source>
        <translation>Εκτύπωση διπλής όψης</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Φόρμα</translation>
    </message>
    <message>
        <source>Grayscale</source>
        <translation>Αποχρώσεις του γκρι</translation>
    </message>
    <message>
        <source>Long side</source>
        <translation>Μεγάλη πλευρά</translation>
    </message>
    <message>
        <source>Long side binding</source>
        <translation>Βιβλιοδεσία στη μεγάλη πλευρά</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Καμία</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Όχι</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Επιλογές</translation>
    </message>
    <message>
        <source>Output Settings</source>
        <translation>Ρυθμίσεις εξόδου</translation>
    </message>
    <message>
        <source>Page Set:</source>
        <translation>Σύνολο σελίδων:</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Σελίδες</translation>
    </message>
    <message>
        <source>Pages from</source>
        <translation>Σελίδες από</translation>
    </message>
    <message>
        <source>Print all</source>
        <translation>Εκτύπωση όλων</translation>
    </message>
    <message>
        <source>Print range</source>
        <translation>Περιοχή εκτύπωσης</translation>
    </message>
    <message>
        <source>Reverse</source>
        <translation>Αντίστροφη σειρά</translation>
    </message>
    <message>
        <source>Selection</source>
        <translation>Επιλογή</translation>
    </message>
    <message>
        <source>Short side</source>
        <translation>Μικρή πλευρά</translation>
    </message>
    <message>
        <source>Short side binding</source>
        <translation>Βιβλιοδεσία στη μικρή πλευρά</translation>
    </message>
    <message>
        <source>Specify pages or ranges separated by commas. Ranges are specified by two numbers separated by a hyphen. E.g: 3,5-7,9 prints pages 3, 5, 6, 7 and 9.</source>
        <translation>Γράψτε σελίδες ή περιοχές χωρισμένες με κόμματα. Μια περιοχή δίνεται με δύο αριθμούς χωρισμένους με παύλα. Π.χ. το 3,5-7,9 τυπώνει τις σελίδες 3, 5, 6, 7 και 9.</translation>
    </message>
    <message>
        <source>to</source>
        <translation>έως</translation>
    </message>
</context>
<context>
    <name>QPrintWidget</name>
    <message>
        <source>&amp;Name:</source>
        <translation>Ό&amp;νομα:</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Form</source>
        <translation>Φόρμα</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Θέση:</translation>
    </message>
    <message>
        <source>Output &amp;file:</source>
        <translation>&amp;Αρχείο εξόδου:</translation>
    </message>
    <message>
        <source>P&amp;roperties</source>
        <translation>&amp;Ιδιότητες</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Προεπισκόπηση</translation>
    </message>
    <message>
        <source>Printer</source>
        <translation>Εκτυπωτής</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>Τύπος:</translation>
    </message>
</context>
<context>
    <name>QProgressDialog</name>
    <message>
        <source>Cancel</source>
        <translation>Άκυρο</translation>
    </message>
</context>
<context>
    <name>QScrollBar</name>
    <message>
        <source>Bottom</source>
        <translation>Τέλος</translation>
    </message>
    <message>
        <source>Left edge</source>
        <translation>Αριστερό άκρο</translation>
    </message>
    <message>
        <source>Page down</source>
        <translation>Μία σελίδα κάτω</translation>
    </message>
    <message>
        <source>Page left</source>
        <translation>Μία σελίδα αριστερά</translation>
    </message>
    <message>
        <source>Page right</source>
        <translation>Μία σελίδα δεξιά</translation>
    </message>
    <message>
        <source>Page up</source>
        <translation>Μία σελίδα πάνω</translation>
    </message>
    <message>
        <source>Right edge</source>
        <translation>Δεξί άκρο</translation>
    </message>
    <message>
        <source>Scroll down</source>
        <translation>Κύλιση κάτω</translation>
    </message>
    <message>
        <source>Scroll here</source>
        <translation>Κύλιση εδώ</translation>
    </message>
    <message>
        <source>Scroll left</source>
        <translation>Κύλιση αριστερά</translation>
    </message>
    <message>
        <source>Scroll right</source>
        <translation>Κύλιση δεξιά</translation>
    </message>
    <message>
        <source>Scroll up</source>
        <translation>Κύλιση πάνω</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Αρχή</translation>
    </message>
</context>
<context>
    <name>QTabBar</name>
    <message>
        <source>Scroll Left</source>
        <translation>Κύλιση αριστερά</translation>
    </message>
    <message>
        <source>Scroll Right</source>
        <translation>Κύλιση δεξιά</translation>
    </message>
</context>
<context>
    <name>QUnicodeControlCharacterMenu</name>
    <message>
        <source>FSI First strong isolate</source>
        <translation>FSI Απομόνωση πρώτου ισχυρού</translation>
    </message>
    <message>
        <source>Insert Unicode control character</source>
        <translation>Εισαγωγή χαρακτήρα ελέγχου Unicode</translation>
    </message>
    <message>
        <source>LRE Start of left-to-right embedding</source>
        <translation>LRE Αρχή ενσωμάτωσης αριστερά προς δεξιά</translation>
    </message>
    <message>
        <source>LRI Left-to-right isolate</source>
        <translation>LRI Απομόνωση αριστερά προς δεξιά</translation>
    </message>
    <message>
        <source>LRM Left-to-right mark</source>
        <translation>LRM Σημάδι αριστερά προς δεξιά</translation>
    </message>
    <message>
        <source>LRO Start of left-to-right override</source>
        <translation>LRO Αρχή επιβολής αριστερά προς δεξιά</translation>
    </message>
    <message>
        <source>PDF Pop directional formatting</source>
        <translation>PDF Τέλος κατευθυντικής μορφοποίησης</translation>
    </message>
    <message>
        <source>PDI Pop directional isolate</source>
        <translation>PDI Τέλος κατευθυντικής απομόνωσης</translation>
    </message>
    <message>
        <source>RLE Start of right-to-left embedding</source>
        <translation>RLE Αρχή ενσωμάτωσης δεξιά προς αριστερά</translation>
    </message>
    <message>
        <source>RLI Right-to-left isolate</source>
        <translation>RLI Απομόνωση δεξιά προς αριστερά</translation>
    </message>
    <message>
        <source>RLM Right-to-left mark</source>
        <translation>RLM Σημάδι δεξιά προς αριστερά</translation>
    </message>
    <message>
        <source>RLO Start of right-to-left override</source>
        <translation>RLO Αρχή επιβολής δεξιά προς αριστερά</translation>
    </message>
    <message>
        <source>ZWJ Zero width joiner</source>
        <translation>ZWJ Συνδετικό μηδενικού πλάτους</translation>
    </message>
    <message>
        <source>ZWNJ Zero width non-joiner</source>
        <translation>ZWNJ Μη συνδετικό μηδενικού πλάτους</translation>
    </message>
    <message>
        <source>ZWSP Zero width space</source>
        <translation>ZWSP Κενό μηδενικού πλάτους</translation>
    </message>
</context>
<context>
    <name>QWhatsThisAction</name>
    <message>
        <source>What&apos;s This?</source>
        <translation>Τι είναι αυτό;</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Copy</source>
        <translation>Α&amp;ντιγραφή</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Επικόλληση</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Ακύρωση α&amp;ναίρεσης</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Αναίρεση</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>Αντιγραφή θέσης &amp;συνδέσμου</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>Απο&amp;κοπή</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Διαγραφή</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Επιλογή όλων</translation>
    </message>
</context>
<context>
    <name>QWizard</name>
    <message>
        <source>&amp;Finish</source>
        <translation>&amp;Τέλος</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Βοήθεια</translation>
    </message>
    <message>
        <source>&amp;Next</source>
        <translation>&amp;Επόμενο</translation>
    </message>
    <message>
        <source>&amp;Next &gt;</source>
        <translation>&amp;Επόμενο &gt;</translation>
    </message>
    <message>
        <source>&lt; &amp;Back</source>
        <translation>&lt; &amp;Πίσω</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Άκυρο</translation>
    </message>
    <message>
        <source>Commit</source>
        <translation>Υποβολή</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Συνέχεια</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Τέλος</translation>
    </message>
    <message>
        <source>Go Back</source>
        <translation>Επιστροφή</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Βοήθεια</translation>
    </message>
</context>
</TS>
