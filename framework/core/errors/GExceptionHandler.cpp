// The DLL exports its copy of the handlers from here.
#include "framework/core/errors/GExceptionHandler.h"
