// All of the library's public interface.
#pragma once

#include "Diag.h"
#include "linkdb.h"
