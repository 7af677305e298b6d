#include "lumo/version.h"

#include <string>

#include <gtest/gtest.h>

// The build passes LUMO_PROJECT_VERSION, the version in CMakeLists.txt.
TEST(Version, OfTheHeaderIsThatOfTheProject)
{
  EXPECT_EQ(lumo::kVersion, LUMO_PROJECT_VERSION);
  EXPECT_EQ(std::to_string(LUMO_VERSION_MAJOR) + "." + std::to_string(LUMO_VERSION_MINOR) + "." +
                std::to_string(LUMO_VERSION_PATCH),
            LUMO_PROJECT_VERSION);
}
