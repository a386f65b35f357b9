#pragma once
// The body of a download-info reply: "size|URL of the setup|title|notes", without a terminator.

#include <QString>

struct DownloadInfoFields {
    QString size;    // decimal bytes, as the server wrote it
    QString url;
    QString title;
    QString notes;   // rich text allowed
};

// Splits the body at "|", keeping empty parts. A body of fewer than four fields gives false and
// leaves the fields empty: it is no answer the page can act on. Fields past the fourth are ignored.
bool readDownloadInfo(const QString &body, DownloadInfoFields *fields);

// The setup's file name: what follows the last "/" of the URL. A name that could still leave the
// version folder (a "\", a drive's colon, "." or "..") is cut to the part behind its last
// separator, and "." and ".." give an empty name.
QString setupFileName(const QString &url);
