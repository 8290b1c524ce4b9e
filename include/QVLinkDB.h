// All of the library's public interface.
#pragma once

#include "CNTAdminObject.h"
#include "CSyncObject.h"
#include "CUtilsPath.h"
#include "Diag.h"
#include "linkdb.h"
#include "std_exception.h"
#include "UtilsAllocator.h"
#include "UtilsBase.h"
#include "UtilsByte.h"
#include "UtilsList.h"
#include "UtilsRegistry.h"
#include "UtilsString.h"
#include "UtilsStringList.h"
#include "UtilsVector.h"
