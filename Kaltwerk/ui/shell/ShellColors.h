#pragma once

#include <QColor>

namespace ventaro {

/// The theme's colours for what the shell draws without a view; they bear the theme's names.
struct ShellColors {
    QColor popover;
    QColor popoverBorder;
    QColor textPrimary;
    QColor focus;

    /// For the appearance of this moment.
    static ShellColors current();
};

} // namespace ventaro
