#pragma once
// Texts of the status panel, worked out from plain facts so that the panel's ticks only fetch the
// facts and set the labels. All are white rich text for the dark panel.

#include <QDate>
#include <QString>
#include <QStringList>

// "Monday" .. "Sunday" and "Jan" .. "Dec": English whatever the locale.
QStringList englishDayNames();
QStringList englishMonthNames();

// The memory line from total and available physical memory in bytes. Each figure is whole
// mebibytes plus one, so exactly 1024 MB reads 1025Mb.
QString memoryText(quint64 totalBytes, quint64 availableBytes);

// Colour depth and refresh of a display mode, as they stand in the display tool tip.
QString colourText(quint32 bitsPerPixel);
QString refreshText(quint32 frequency);
// The display button's tool tip for the current mode.
QString resolutionTooltip(int width, int height, quint32 bitsPerPixel, quint32 frequency);

// "Jan&nbsp;5,&nbsp;2027" and "Tuesday", each behind the white prefix.
QString dateText(const QDate &date);
QString dayText(const QDate &date);

// Two-letter code of a keyboard language id (the high word of a layout handle); EN when unknown.
QString languageCode(quint16 languageId);
// The language label; its bold is left open, as the panel has always shown it.
QString languageLabel(quint16 languageId);
