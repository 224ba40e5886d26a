#pragma once

#include <QStringList>
#include <string>

namespace ventaro {

/// The text that the program prints instead of running, as "--help" and "--version" ask for it;
/// empty if it is to run.
std::string textInsteadOfStart(int argc, const char* const* argv, const std::string& version);

/// Those of `arguments`, without the program's name and Qt's own, that mean nothing here.
QStringList unknownArguments(const QStringList& arguments);

} // namespace ventaro
