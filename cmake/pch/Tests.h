#include "Core.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
