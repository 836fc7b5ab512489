#include "main_routine.h"

bool Main()
{
    return false;
}
