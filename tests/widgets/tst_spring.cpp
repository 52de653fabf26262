// SPDX-License-Identifier: MIT
#include "widgets/spring.h"

#include <QTest>

using widgets::Spring;

class TestSpring : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A press in mid-flight made the strip jump when the way back began at the far end.
    void turnsBackWithoutAJump()
    {
        Spring spring(0);
        spring.start(1, 0);
        const double position = spring.position(0.04);
        const double speed = spring.speed(0.04);
        spring.start(0, 0.04);
        QVERIFY(qAbs(spring.position(0.04) - position) < 1e-9);
        QVERIFY(qAbs(spring.speed(0.04) - speed) < 1e-9);
        QVERIFY(spring.position(0.045) > position); // still on its old way for a moment
        QCOMPARE(spring.position(0.34), 0.0);
        QVERIFY(spring.isSettled(0.34));
    }
};

QTEST_APPLESS_MAIN(TestSpring)
#include "tst_spring.moc"
