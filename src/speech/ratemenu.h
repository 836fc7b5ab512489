#pragma once

class QMenu;
class QWidget;

namespace speech {

class ReadAloud;

// The menu of reading speeds, «Ταχύτητα ανάγνωσης»: one item a step from 50 % to 250 %,
// the reader's speed checked (also when Alt+Up or Alt+Down changed it while reading).
QMenu *makeRateMenu(ReadAloud &reader, QWidget *parent);

} // namespace speech
