#ifndef KESTRO_TESTS_GOLDEN_H
#define KESTRO_TESTS_GOLDEN_H

#include <gtest/gtest.h>

#include <map>
#include <string>

// Expected texts kept as files under tests/fixtures/golden/, so long mark-up lives in one place.
// In a golden file @NAME@ (capitals, digits, _) stands for the value a test gives for NAME:
// every token in the file must be given a value and every value given must be used.
typedef std::map<std::string, std::string> GoldenValues;

// The file `name` under tests/fixtures/ as it is, for inputs too long to read well in a test.
std::string Fixture(const std::string& name);

// The golden text `name` (a path under tests/fixtures/golden/) with its tokens filled in.
std::string Golden(const std::string& name, const GoldenValues& values = GoldenValues());

// Whether `actual` is the golden text; a mismatch names the first line that differs. With
// KESTRO_GOLDEN_UPDATE=1 a golden file without tokens is rewritten from `actual`, and the check
// still fails, so a rewrite is never taken for a pass.
::testing::AssertionResult MatchesGolden(const std::string& name, const std::string& actual,
                                         const GoldenValues& values = GoldenValues());

// What a report page holds between its title line and its bottom: the tables the page's
// writers added. A page without that title or bottom yields "malformed page: " and the page.
std::string PageBody(const std::string& page, const std::string& title);

#endif
