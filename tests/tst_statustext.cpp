#include "testmain.h"

#include "my_shell1/statustext.h"

// Every status text, made in the table (dates under a German locale, so that a locale-dependent
// name would show) and compared with what the panel must show.
class TestStatusText : public QObject {
    Q_OBJECT

private slots:
    void texts_data()
    {
        QTest::addColumn<QString>("made");
        QTest::addColumn<QString>("shown");
        const QString white = "<p style=\"color:#FFFFFF\">";
        auto row = [](const char *rule, const QString &made, const QString &shown) {
            QTest::newRow(rule) << made << shown;
        };
        const quint64 mb = 1024 * 1024;
        row("memory: whole MB plus one, the part dropped", memoryText(2048 * mb + mb - 1, mb - 1),
            white + "Memory Total: 2049Mb Free: 1Mb</p>");
        row("memory above 4 GB does not wrap", memoryText(16 * 1024 * mb, 6000 * mb),
            white + "Memory Total: 16385Mb Free: 6001Mb</p>");

        const QString c16 = "16&nbsp;Colors", c256 = "256&nbsp;Colors";
        const QString high = "High&nbsp;Color&nbsp;(16&nbsp;bit)", truec = "True&nbsp;Color&nbsp;(32&nbsp;bit)";
        row("1 bit: 16 colours", colourText(1), c16);
        row("2 to 9 bits: 256 colours", colourText(2) + colourText(9), c256 + c256);
        row("10 to 19 bits: high colour", colourText(10) + colourText(19), high + high);
        row("20 bits falls between the tests", colourText(20), c16);
        row("21 bits: true colour", colourText(21), truec);
        row("the display tooltip", resolutionTooltip(1024, 768, 32, 60),
            "<B>Display Settings</B><p style=\"margin-top:2px;margin-bottom:0px\">Change a display "
            "resolution<p><B>Current&nbsp;resolution:</B>&nbsp;1024&nbsp;by&nbsp;768,&nbsp;" + truec
                + ",&nbsp;60&nbsp;Hertz");
        row("a refresh of 1 is the default", resolutionTooltip(800, 600, 4, 1).section("</B>", -1),
            "&nbsp;800&nbsp;by&nbsp;600,&nbsp;256&nbsp;Colors,&nbsp;Default&nbsp;Refresh");
        row("a refresh of 2 is shown", refreshText(2), "2&nbsp;Hertz");

        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        row("a date", dateText(QDate(2027, 1, 5)) + dayText(QDate(2027, 1, 5)),
            white + "Jan&nbsp;5,&nbsp;2027</p>" + white + "Tuesday");
        row("the last day of the year, a Sunday", dateText(QDate(2023, 12, 31)) + dayText(QDate(2023, 12, 31)),
            white + "Dec&nbsp;31,&nbsp;2023</p>" + white + "Sunday");
        row("an invalid date leaves the labels blank", dateText(QDate()) + dayText(QDate()), white + white);
        QLocale::setDefault(before);

        // The label leaves its bold open.
        auto language = [&](const char *rule, int id, const QString &code) {
            row(rule, languageCode(quint16(id)) + languageLabel(quint16(id)), code + white + "<B>" + code + "</p>");
        };
        language("the language table's first row", 1028, "TW");
        language("the language table's last row", 3076, "HK");
        language("an id inside the table's range but missing: EN", 1032, "EN");
        language("another sublanguage: EN", 0x0c07, "EN");
    }

    void texts()
    {
        QFETCH(QString, made);
        QFETCH(QString, shown);
        QCOMPARE(made, shown);
    }
};

KELPIE_TEST_MAIN(TestStatusText)
#include "tst_statustext.moc"
