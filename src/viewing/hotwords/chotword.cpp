#include "chotword.h"

// The record is all inline; this unit keeps the library's object list in step with its
// headers.
