#pragma once
// Number tokens of the engine's text forms.
#include <iosfwd>
#include <string>

namespace tarvex {

// Reads one white-space delimited number. Accepts what stream extraction
// accepts, and also "inf" and "nan", which the writers can produce, so that
// such values survive a round trip. Parsing ignores the global C locale.
// On a missing or malformed token the stream's failure is set and false returned.
[[nodiscard]] bool readNumber(std::istream& in, double& value);

// Appends `value` as printf's "%.<digits>g" would write it in the C locale.
void appendNumber(std::string& text, double value, int digits);

}  // namespace tarvex
