#include "orvex/automation/interface_definition.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace orvex::automation {
namespace {

std::string committed(const std::string& name) {
  std::ifstream file(ORVEX_SOURCE_DIR "/orvex/automation/" + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(InterfaceDefinition, CommittedFilesAreWhatTheCatalogueYields) {
  EXPECT_TRUE(committed("orvex.idl") == interfaceDefinition()) << "scripts/update-generated brings it up to date";
  EXPECT_TRUE(committed("Orvex.Server.manifest") == registrationFreeManifest())
      << "scripts/update-generated brings it up to date";
}

}  // namespace
}  // namespace orvex::automation
