#include "orvex/data/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "orvex/data/number_text.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(Names, AreComparedWithoutRegardToCase) {
  struct {
    const char* a;
    const char* b;
    bool same;
  } const cases[] = {
      {"Close", "cLOSE", true},
      {"Close", "Close ", false},
      {"", "", true},
      {"Ärger ŸÆÞ", "äRGER ÿæþ", true},
      {"ŁÓDŹ ǅ Ȟ", "łódź ǆ ȟ", true},
      {"ΑΒΓΩΆ", "αβγωά", true},
      {"АБВЯЁЂ", "абвяёђ", true},
      {"×", "÷", false},
      {"@[", "`{", false},
      {"ſ", "S", true},
      {"ẞ", "ß", true},
      {"А", "A", false},  // Cyrillic and Latin
      {"日本", "日本", true},
      {"\xFF", "\xFF", true},
      {"\xC3", "\xC3\x84", false},
      {"\xE4", "\xC3\xA4", false},  // a stray byte is not the letter of its number
  };
  for (const auto& [a, b, same] : cases) {
    EXPECT_EQ(equalNames(a, b), same) << a << " / " << b;
    EXPECT_EQ(equalNames(b, a), same) << a << " / " << b;
  }
}

TEST(Windows1252, BecomesUtf8) {
  EXPECT_EQ(utf8FromWindows1252("a\x80\xE4\x9F\x81"), "a€äŸ\xC2\x81");
  EXPECT_FALSE(isUtf8("a\xE4"));
  EXPECT_FALSE(isUtf8("\xED\xA0\x80")) << "half of a surrogate pair";
  EXPECT_FALSE(isUtf8("\xC0\xAF")) << "a longer form than needed";
  EXPECT_TRUE(isUtf8("aä€\xF0\x9F\x98\x80"));
}

TEST(Utf16, IsMadeOfUtf8AndBack) {
  EXPECT_EQ(utf16FromUtf8("aä€\xF0\x9F\x98\x80\xFF"), u"aä€\U0001F600\uFFFD");
  EXPECT_EQ(utf8FromUtf16(u"aä€\U0001F600"), "aä€\xF0\x9F\x98\x80");
}

TEST(NumberText, IsReadAsFarAsItFits) {
  struct {
    const char* text;
    double value;
    std::size_t length;
  } const cases[] = {
      {"", 0, 0},
      {"  12.5x", 12.5, 6},
      {"\t-3", -3, 3},
      {"+4", 4, 2},
      {"1 2", 1, 1},
      {".5", 0.5, 2},
      {"5.", 5, 2},
      {".", 0, 0},
      {"-", 0, 0},
      {"- 1", 0, 0},
      {"1.2.3", 1.2, 3},
      {"1,5", 1, 1},
      {"0x10", 0, 1},
      {"1e3", 1000, 3},
      {"1E+2z", 100, 4},
      {"1e", 1, 1},
      {"1e+", 1, 1},
      {"1e-", 1, 1},
      {"e5", 0, 0},
      {"inf", 0, 0},
      {"nan", 0, 0},
      {";1", 0, 0},
      {"00012", 12, 5},
      {"1e-400", 0, 6},
      {"0e999999999999", 0, 14},
      {"4.9e-324", 5e-324, 8},
      {"0.1e-99999999999999999999", 0, 25},
      {"123456789012345678901234567890", 123456789012345678901234567890.0, 30},
  };
  for (const auto& [text, value, length] : cases) {
    const NumberText got = readNumber(text);
    EXPECT_EQ(got.value, value) << text;
    EXPECT_EQ(got.length, length) << text;
  }
  EXPECT_TRUE(std::signbit(numberFromText("-0")));
}

TEST(NumberText, BeyondADoubleIsAnOverflow) {
  const std::string longZeros = "1" + std::string(400, '0');
  for (const std::string& text : {std::string("1e309"), std::string("-2e308"), longZeros, longZeros + ".5",
                                  std::string("0.1e99999999999999999999")}) {
    EXPECT_FAULT(faults::Overflow, readNumber(text)) << text;
  }
  EXPECT_EQ(numberFromText(longZeros + "e-399"), 10.0);
}

TEST(NumberText, IsTheNearestDouble) {
  // strtod is the second opinion.
  std::mt19937_64 draw(20);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t digits = draw() >> (draw() % 64);
    std::string text = std::to_string(digits);
    if (draw() % 2 == 0) text.insert(static_cast<std::size_t>(draw() % (text.size() + 1)), ".");
    if (draw() % 2 == 0) text += "e" + std::to_string(static_cast<int>(draw() % 80) - 40);
    EXPECT_EQ(numberFromText(text), std::strtod(text.c_str(), nullptr)) << text;
  }
}

TEST(NumberText, OfASingleIsItsShortest) {
  const struct {
    float single;
    double number;
  } cases[] = {{10.1F, 10.1},
               {0.1F, 0.1},
               {-2.5F, -2.5},
               {16777216.0F, 16777216.0},
               {1e30F, 1e30},
               {1e-45F, 1e-45},
               {3.4028235e38F, 3.4028235e38},
               {0.0F, 0.0},
               {123.456F, 123.456}};
  for (const auto& [single, number] : cases) EXPECT_EQ(numberFromSingle(single), number) << number;
  EXPECT_TRUE(std::signbit(numberFromSingle(-0.0F)));
  EXPECT_EQ(numberFromSingle(std::numeric_limits<float>::infinity()), infinity);
  EXPECT_TRUE(std::isnan(numberFromSingle(std::numeric_limits<float>::quiet_NaN())));
}

}  // namespace
}  // namespace orvex::test
