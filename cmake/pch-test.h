#pragma once
// The shared precompiled header of tests that need no fakes: the core's and the test library.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cmake/pch-core.h"
