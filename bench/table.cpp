// SPDX-License-Identifier: MIT
#include "table.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace bench {

namespace {

void printLine(const QStringList &cells)
{
    std::printf("| %s |\n", qUtf8Printable(cells.join(QStringLiteral(" | "))));
    std::fflush(stdout);
}

} // namespace

Table::Table(const QString &title, const QStringList &columns)
    : m_title(title)
    , m_columns(columns)
{
    std::printf("\n%s\n\n", qUtf8Printable(title));
    printLine(columns);
    QStringList rule = {QStringLiteral("---")};
    rule.resize(columns.size(), QStringLiteral("---:"));
    printLine(rule);
}

Table::~Table()
{
    const QString path = qEnvironmentVariable("PW_BENCH_JSON");
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    const QJsonObject table = {{QStringLiteral("title"), m_title},
                               {QStringLiteral("columns"), QJsonArray::fromStringList(m_columns)},
                               {QStringLiteral("rows"), m_rows}};
    file.write(QJsonDocument(table).toJson(QJsonDocument::Compact) + '\n');
}

void Table::row(const QStringList &cells)
{
    QJsonArray values;
    for (const QString &cell : cells) {
        bool isNumber = false;
        const double value = cell.toDouble(&isNumber);
        values.append(isNumber ? QJsonValue(value) : QJsonValue(cell));
    }
    printLine(cells);
    m_rows.append(values);
}

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? 0 : values.at(values.size() / 2);
}

double processorTime()
{
    timespec now;
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

} // namespace bench
