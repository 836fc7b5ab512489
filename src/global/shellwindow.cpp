#include "shellwindow.h"

namespace {

ShellWindow *g_current = nullptr;

std::function<ShellWindow *()> &factory()
{
    static std::function<ShellWindow *()> instance;
    return instance;
}

} // namespace

ShellWindow::~ShellWindow() = default;

ShellWindow *ShellWindow::instance()
{
    if (!g_current && factory())
        g_current = factory()();
    return g_current;
}

ShellWindow *ShellWindow::existing()
{
    return g_current;
}

void ShellWindow::setFactory(std::function<ShellWindow *()> f)
{
    factory() = std::move(f);
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
