#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>
#include <variant>

// Fills the one printf-style conversion of a translated text ("%lld m", "%.2f km") with its
// argument, formatted by the locale: its digits and decimal separator, grouping only with the
// "'" flag. "%%" prints "%". Text without a conversion is returned as it stands.
QString localizedStringWithFormat(const QString &format, std::variant<std::int64_t, double> argument,
                                  const QLocale &locale = QLocale());
