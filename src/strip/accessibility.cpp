// SPDX-License-Identifier: MIT
#include "strip/accessibility.h"

#include "strip/contentview.h"
#include "strip/tilemenu.h"
#include "widgets/popover.h"

#include <QAccessibleWidget>
#include <QPointer>

namespace strip {

namespace {

/// One row of a tile's links, made when somebody asks for it.
class LinkRow : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    LinkRow(TileMenu &list, int row)
        : m_list(&list)
        , m_row(row)
    {
    }

    bool isValid() const override { return m_list && index().isValid(); }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override { return QAccessible::queryAccessibleInterface(m_list); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QString text(QAccessible::Text kind) const override
    {
        switch (kind) {
        case QAccessible::Name:
            return index().data(Qt::AccessibleTextRole).toString();
        case QAccessible::Description:
            return index().data(Qt::AccessibleDescriptionRole).toString();
        default:
            return {};
        }
    }
    void setText(QAccessible::Text, const QString &) override { }
    QRect rect() const override
    {
        const QRect area = m_list->visualRect(index());
        return {m_list->viewport()->mapToGlobal(area.topLeft()), area.size()};
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.focusable = true;
        state.focused = m_list->hasFocus() && m_list->currentIndex() == index();
        state.offscreen = !m_list->viewport()->rect().intersects(m_list->visualRect(index()));
        state.invisible = !m_list->isVisible();
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &name) override
    {
        if (!isValid())
            return;
        if (name == pressAction())
            Q_EMIT m_list->clicked(index());
        else if (name == setFocusAction())
            m_list->setCurrentIndex(index());
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QModelIndex index() const { return m_list->model()->index(m_row, 0); }

    QPointer<TileMenu> m_list;
    int m_row;
};

class LinkList : public QAccessibleWidget
{
public:
    explicit LinkList(TileMenu &list)
        : QAccessibleWidget(&list, QAccessible::List)
        , m_list(list)
    {
    }
    ~LinkList() override
    {
        for (const QAccessible::Id row : std::as_const(m_rows))
            QAccessible::deleteAccessibleInterface(row);
    }

    int childCount() const override { return m_list.model()->rowCount(); }
    QAccessibleInterface *child(int row) const override
    {
        if (row < 0 || row >= childCount())
            return nullptr;
        if (!m_rows.contains(row))
            m_rows.insert(row, QAccessible::registerAccessibleInterface(new LinkRow(m_list, row)));
        return QAccessible::accessibleInterface(m_rows.value(row));
    }
    QAccessibleInterface *childAt(int x, int y) const override
    {
        return child(m_list.indexAt(m_list.viewport()->mapFromGlobal(QPoint(x, y))).row());
    }
    QAccessibleInterface *focusChild() const override { return child(m_list.currentIndex().row()); }
    int indexOfChild(const QAccessibleInterface *child) const override
    {
        return child ? m_rows.key(QAccessible::uniqueId(const_cast<QAccessibleInterface *>(child)), -1) : -1;
    }

private:
    TileMenu &m_list;
    mutable QHash<int, QAccessible::Id> m_rows; ///< those asked for
};

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    if (auto *list = qobject_cast<TileMenu *>(object))
        return new LinkList(*list);
    // A reader announces only what is a window when it becomes active.
    if (qobject_cast<widgets::Popover *>(object) || qobject_cast<ContentView *>(object))
        return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Window);
    return nullptr;
}

} // namespace

void installAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

} // namespace strip
