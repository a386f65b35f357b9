#include "testmain.h"

#include "my_shell1/statustext.h"

namespace {
const QString white = QStringLiteral("<p style=\"color:#FFFFFF\">");
}

class TestStatusText : public QObject {
    Q_OBJECT

private slots:

    void memory_data()
    {
        QTest::addColumn<quint64>("total");
        QTest::addColumn<quint64>("available");
        QTest::addColumn<QString>("text");
        const quint64 mb = 1024 * 1024;
        QTest::newRow("whole MB plus one, the part dropped") << 2048 * mb + mb - 1 << mb - 1
            << white + "Memory Total: 2049Mb Free: 1Mb</p>";
        QTest::newRow("above 4 GB does not wrap") << 16 * 1024 * mb << 6000 * mb
            << white + "Memory Total: 16385Mb Free: 6001Mb</p>";
    }

    void memory()
    {
        QFETCH(quint64, total);
        QFETCH(quint64, available);
        QFETCH(QString, text);
        QCOMPARE(memoryText(total, available), text);
    }

    void colour_data()
    {
        QTest::addColumn<quint32>("bits");
        QTest::addColumn<QString>("text");
        const QString c16 = "16&nbsp;Colors", c256 = "256&nbsp;Colors";
        const QString high = "High&nbsp;Color&nbsp;(16&nbsp;bit)";
        const QString truec = "True&nbsp;Color&nbsp;(32&nbsp;bit)";
        QTest::newRow("1") << 1u << c16;
        QTest::newRow("2") << 2u << c256;
        QTest::newRow("9") << 9u << c256;
        QTest::newRow("10") << 10u << high;
        QTest::newRow("19") << 19u << high;
        QTest::newRow("20 falls between the tests") << 20u << c16;
        QTest::newRow("21") << 21u << truec;
    }

    void colour()
    {
        QFETCH(quint32, bits);
        QFETCH(QString, text);
        QCOMPARE(colourText(bits), text);
    }

    void tooltip()
    {
        QCOMPARE(resolutionTooltip(1024, 768, 32, 60),
                 QStringLiteral("<B>Display Settings</B><p style=\"margin-top:2px;margin-bottom:0px\">"
                                "Change a display resolution<p><B>Current&nbsp;resolution:</B>"
                                "&nbsp;1024&nbsp;by&nbsp;768,&nbsp;True&nbsp;Color&nbsp;(32&nbsp;bit),"
                                "&nbsp;60&nbsp;Hertz"));
        QVERIFY(resolutionTooltip(800, 600, 4, 1)
                    .endsWith("&nbsp;800&nbsp;by&nbsp;600,&nbsp;256&nbsp;Colors,&nbsp;Default&nbsp;Refresh"));
        QCOMPARE(refreshText(2), QStringLiteral("2&nbsp;Hertz"));
    }

    void date_data()
    {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QString>("dateLabel");
        QTest::addColumn<QString>("dayLabel");
        QTest::newRow("5 January 2027") << QDate(2027, 1, 5)
            << white + "Jan&nbsp;5,&nbsp;2027</p>" << white + "Tuesday";
        QTest::newRow("last day of the year, a Sunday") << QDate(2023, 12, 31)
            << white + "Dec&nbsp;31,&nbsp;2023</p>" << white + "Sunday";
        QTest::newRow("invalid date leaves the labels blank") << QDate() << white << white;
    }

    void date()
    {
        QFETCH(QDate, date);
        QFETCH(QString, dateLabel);
        QFETCH(QString, dayLabel);
        // Under a German locale, so that a locale-dependent name shows.
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QString dateGot = dateText(date), dayGot = dayText(date);
        QLocale::setDefault(before);
        QCOMPARE(dateGot, dateLabel);
        QCOMPARE(dayGot, dayLabel);
    }

    void language_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("code");
        // The table's ends, one row between, and ids that are near a row but not in it.
        QTest::newRow("first row") << 1028 << "TW";
        QTest::newRow("RU") << 1049 << "RU";
        QTest::newRow("last row") << 3076 << "HK";
        QTest::newRow("1032 lies inside the table's range but is missing") << 1032 << "EN";
        QTest::newRow("sublanguage differs") << 0x0c07 << "EN";
    }

    void language()
    {
        QFETCH(int, id);
        QFETCH(QString, code);
        QCOMPARE(languageCode(quint16(id)), code);
        // The label leaves its bold open.
        QCOMPARE(languageLabel(quint16(id)), white + "<B>" + code + "</p>");
    }
};

KELPIE_TEST_MAIN(TestStatusText)
#include "tst_statustext.moc"
