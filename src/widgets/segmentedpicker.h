// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QWidget>

namespace widgets {

class Segment;

/// A row of joined buttons of which at most one is chosen. Each is a radio button to the keyboard and to
/// screen readers. Texts give way: the row is never wider than its place.
class SegmentedPicker : public QWidget
{
    Q_OBJECT

public:
    explicit SegmentedPicker(QWidget *parent);

    void setOptions(const QStringList &texts);
    int count() const { return int(m_segments.size()); }
    /// -1 for none.
    int currentIndex() const;
    /// No signal: only what the user does is announced. -1 chooses none.
    void setCurrentIndex(int index);

Q_SIGNALS:
    /// The user chose a segment, perhaps the one that was chosen already.
    void activated(int index);

private:
    void syncFocus();

    QList<Segment *> m_segments;
};

} // namespace widgets
