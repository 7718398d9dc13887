#include "Kiv_Version.h"

const char *Kiv_Version()
{
    return "0.1.0";
}
