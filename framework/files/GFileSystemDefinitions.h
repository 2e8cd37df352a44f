#pragma once

// The members of GFileSystemBase, apart from its header so that a program that uses the file system
// does not compile the platform's classes. Included where the template is instantiated.

#include "framework/files/GFileSystemDetails.h"
#include "framework/files/GFileSystemOperations.h"
#include "framework/files/GFileSystemPlaces.h"
