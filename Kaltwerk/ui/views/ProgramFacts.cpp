#include "ProgramFacts.h"

#include "HelperIPC.h"

namespace ventaro {

QString ProgramFacts::version() { return QStringLiteral(VENTARO_VERSION); }

int ProgramFacts::helperProtocol() { return static_cast<int>(HelperConstants::protocolVersion); }

QString ProgramFacts::helperBinary() {
    return QString::fromLatin1(HelperConstants::helperBinaryInstallPath);
}

QString ProgramFacts::helperSocket() { return QString::fromLatin1(HelperConstants::socketPath); }

} // namespace ventaro
