#pragma once

#include "tests/support/EnvironmentVariable.h"
