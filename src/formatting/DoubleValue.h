#pragma once

#include <QStringView>

#include <string_view>

// Reads a number the way typed and pasted text is read everywhere in the app: leading blanks are
// skipped, the longest numeric prefix is taken ("nan" and "inf" included), and text without one
// reads as 0. It never fails.
double doubleValue(std::string_view text);
double doubleValue(QStringView text);

// The length of the numeric prefix that doubleValue reads (blanks included); 0 when there is none.
std::size_t numericPrefixLength(std::string_view text);
