#pragma once

#include "System/StoredList.h"
