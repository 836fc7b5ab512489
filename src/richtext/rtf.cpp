#include "rtf.h"
