#include "ratemenu.h"

#include "rate.h"
#include "readaloud.h"

#include <errorpolicy.h>

#include <QActionGroup>
#include <QMenu>

namespace speech {

QMenu *makeRateMenu(ReadAloud &reader, QWidget *parent)
{
    auto *menu = new QMenu(QStringLiteral("Ταχύτητα ανάγνωσης"), parent);
    auto *group = new QActionGroup(menu);
    group->setExclusive(true);
    for (int rate = SlowestRate; rate <= FastestRate; rate += RateStep) {
        QString name = QStringLiteral("%1%").arg(rate);
        if (rate == NormalRate)
            name += QStringLiteral(" (κανονική)");
        QAction *item = menu->addAction(name);
        item->setCheckable(true);
        item->setChecked(rate == reader.rate());
        item->setData(rate);
        group->addAction(item);
        QObject::connect(item, &QAction::triggered, &reader,
            [&reader, rate] { platform::guarded([&] { reader.setRate(rate); }); });
    }
    QObject::connect(&reader, &ReadAloud::rateChanged, menu, [group](int rate) {
        for (QAction *item : group->actions())
            item->setChecked(item->data().toInt() == rate);
    });
    return menu;
}

} // namespace speech
