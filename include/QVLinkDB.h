// All of the library's public interface.
#pragma once

#include "CNTAdminObject.h"
#include "CSyncObject.h"
#include "Diag.h"
#include "linkdb.h"
#include "UtilsAllocator.h"
#include "UtilsBase.h"
#include "UtilsList.h"
#include "UtilsVector.h"
