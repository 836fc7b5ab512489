#include "shellwindow.h"

namespace {

// session: bridge, both of them.
ShellWindow *g_current = nullptr;

std::function<ShellWindow *(bool)> &sessionShell()
{
    static std::function<ShellWindow *(bool)> shell;
    return shell;
}

} // namespace

ShellWindow::~ShellWindow() = default;

ShellWindow *ShellWindow::instance()
{
    if (g_current)
        return g_current;
    return sessionShell() ? sessionShell()(true) : nullptr;
}

ShellWindow *ShellWindow::existing()
{
    if (g_current)
        return g_current;
    return sessionShell() ? sessionShell()(false) : nullptr;
}

void ShellWindow::setCurrent(ShellWindow *shell)
{
    g_current = shell;
}

void ShellWindow::clearCurrent(ShellWindow *shell)
{
    if (g_current == shell)
        g_current = nullptr;
}

void ShellWindow::setSessionShell(std::function<ShellWindow *(bool)> shell)
{
    sessionShell() = std::move(shell);
}
