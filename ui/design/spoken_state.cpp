// SPDX-FileCopyrightText: Veltro contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/design/spoken_state.h"

#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>

namespace veltro {
namespace {

class SpokenItem final : public QAccessibleQuickItem {
public:
    explicit SpokenItem(QQuickItem *item) : QAccessibleQuickItem(item)
    {
        QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
            State changed;
            changed.disabled = true;
            QAccessibleStateChangeEvent event(item, changed);
            QAccessible::updateAccessibility(&event);
        });
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        State state = QAccessibleQuickItem::state();
        state.disabled = !static_cast<const QQuickItem *>(object())->isEnabled();
        return state;
    }

private:
    using State = QAccessible::State;
};

// Of the items that speak at all.
QAccessibleInterface *spokenItem(const QString &className, QObject *object)
{
    auto *item =
        className == QLatin1String("QQuickItem") ? static_cast<QQuickItem *>(object) : nullptr;
    return item && QQuickItemPrivate::get(item)->isAccessible ? new SpokenItem(item) : nullptr;
}

}

void tellWhatIsDisabled()
{
    QAccessible::installFactory(spokenItem); // which is asked before Qt's own
}

}
