#include "ShellColors.h"

#include "Appearance.h"

namespace ventaro {

ShellColors ShellColors::current() {
    constexpr float borderOpacity = 0.12F;
    if (Appearance::shared().dark()) {
        return {QColor(0x26282C), QColor::fromRgbF(1, 1, 1, borderOpacity), QColor(0xF1F2F4),
                QColor(0x78B4FF)};
    }
    return {QColor(0xF7F8FA), QColor::fromRgbF(0, 0, 0, borderOpacity), QColor(0x1B1C20),
            QColor(0x0A62E0)};
}

} // namespace ventaro
