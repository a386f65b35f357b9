#include "statustext.h"

#include "look/stylesheets.h"

namespace {
struct LanguageRow {
    quint16 id;
    const char *code;
};

const LanguageRow languageTable[] = {
    {0x0404, "TW"}, {0x0406, "DK"}, {0x0407, "DE"}, {0x0409, "EN"}, {0x040a, "ES"},
    {0x040b, "FI"}, {0x040c, "FR"}, {0x0410, "IT"}, {0x0411, "JP"}, {0x0412, "KR"},
    {0x0413, "NL"}, {0x0414, "NO"}, {0x0419, "RU"}, {0x041d, "SE"}, {0x0804, "CN"},
    {0x0807, "SH"}, {0x0816, "PT"}, {0x0c04, "HK"},
};
}

QStringList englishDayNames()
{
    return {QStringLiteral("Monday"), QStringLiteral("Tuesday"), QStringLiteral("Wednesday"),
            QStringLiteral("Thursday"), QStringLiteral("Friday"), QStringLiteral("Saturday"),
            QStringLiteral("Sunday")};
}

QStringList englishMonthNames()
{
    return {QStringLiteral("Jan"), QStringLiteral("Feb"), QStringLiteral("Mar"),
            QStringLiteral("Apr"), QStringLiteral("May"), QStringLiteral("Jun"),
            QStringLiteral("Jul"), QStringLiteral("Aug"), QStringLiteral("Sep"),
            QStringLiteral("Oct"), QStringLiteral("Nov"), QStringLiteral("Dec")};
}

QString memoryText(quint64 totalBytes, quint64 availableBytes)
{
    return whitePrefix()
        + QStringLiteral("Memory Total: %1Mb Free: %2Mb</p>")
              .arg((totalBytes >> 20) + 1)
              .arg((availableBytes >> 20) + 1);
}

QString colourText(quint32 bitsPerPixel)
{
    // Exactly 20 bits falls between the high-colour and the true-colour test and keeps the
    // default text.
    if (bitsPerPixel >= 2 && bitsPerPixel <= 9)
        return QStringLiteral("256&nbsp;Colors");
    if (bitsPerPixel >= 10 && bitsPerPixel <= 19)
        return QStringLiteral("High&nbsp;Color&nbsp;(16&nbsp;bit)");
    if (bitsPerPixel > 20)
        return QStringLiteral("True&nbsp;Color&nbsp;(32&nbsp;bit)");
    return QStringLiteral("16&nbsp;Colors");
}

QString refreshText(quint32 frequency)
{
    if (frequency > 1)
        return QStringLiteral("%1&nbsp;Hertz").arg(frequency);
    return QStringLiteral("Default&nbsp;Refresh");
}

QString resolutionTooltip(int width, int height, quint32 bitsPerPixel, quint32 frequency)
{
    return QStringLiteral("<B>Display Settings</B><p style=\"margin-top:2px;margin-bottom:0px\">"
                          "Change a display resolution<p><B>Current&nbsp;resolution:</B>"
                          "&nbsp;%1&nbsp;by&nbsp;%2,&nbsp;%3,&nbsp;%4")
        .arg(width)
        .arg(height)
        .arg(colourText(bitsPerPixel), refreshText(frequency));
}

QString dateText(const QDate &date)
{
    if (!date.isValid())
        return whitePrefix();
    return whitePrefix() + englishMonthNames().at(date.month() - 1)
        + QStringLiteral("&nbsp;%1,&nbsp;%2</p>").arg(date.day()).arg(date.year());
}

QString dayText(const QDate &date)
{
    if (!date.isValid())
        return whitePrefix();
    return whitePrefix() + englishDayNames().at(date.dayOfWeek() - 1);
}

QString languageCode(quint16 languageId)
{
    for (const LanguageRow &row : languageTable) {
        if (row.id == languageId)
            return QLatin1String(row.code);
    }
    return QStringLiteral("EN");
}

QString languageLabel(quint16 languageId)
{
    return whitePrefix() + QStringLiteral("<B>") + languageCode(languageId)
        + QStringLiteral("</p>");
}
