#include "shellwindow.h"

ShellWindow::~ShellWindow() = default;
