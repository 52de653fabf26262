// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QStringList>

namespace bench {

/// Figures under headings: on standard output as a Markdown table, and, where PW_BENCH_JSON names a file, as
/// one line of JSON at its end.
class Table
{
public:
    Table(const QString &title, const QStringList &columns);
    ~Table();
    Q_DISABLE_COPY_MOVE(Table)

    void row(const QStringList &cells);

private:
    QString m_title;
    QStringList m_columns;
    QJsonArray m_rows;
};

/// The value as a cell.
QString number(double value, int decimals);

double median(QList<double> values);

/// The time that this thread has had on a processor.
double processorTime(); // ms

} // namespace bench
