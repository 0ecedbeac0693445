#include "orvex/automation/interface_definition.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <vector>

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

/// A line of the list begins with a class and its interface identifier, which only change together with what follows.
std::string interfaceOf(const std::string& line) {
  return line.substr(0, line.find(' ', line.find(' ') + 1));
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST(InterfaceDefinition, KeepsWhatIsReleased) {
  const std::vector<std::string> now = linesOf(interfaceContract());
  const std::vector<std::string> released = linesOf(committed("released_interfaces.txt"));
  ASSERT_FALSE(released.empty());
  std::set<std::string> interfaces;
  for (const std::string& line : released) {
    EXPECT_TRUE(std::find(now.begin(), now.end(), line) != now.end())
        << "compiled clients rely on what is no longer so: " << line;
    interfaces.insert(interfaceOf(line));
  }
  for (const std::string& line : now) {
    if (!interfaces.contains(interfaceOf(line))) continue;
    EXPECT_TRUE(std::find(released.begin(), released.end(), line) != released.end())
        << "a released interface never grows, CONTRIBUTING.md tells what to do: " << line;
  }
}

}  // namespace
}  // namespace orvex::automation
