// What nearly every test includes.
#pragma once

#include "support/child.h"
#include "support/config.h"
#include "support/isolation.h"
#include "support/registry.h"
#include "support/scratch.h"
#include "support/seam.h"
#include "support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <tuple>

namespace testing_support {

using Error = TarvoConfig::Error;

} // namespace testing_support
