#pragma once
// What the update exchange says about this installation, and where it asks. The numbers are the
// product facts that the start-up stores (storeProductFacts).

#include <QString>

int productId();      // sent as pid
int currentBuild();   // versionToBuild of the product's version text, sent as ver
int osCode();         // sent as os
extern const QString productName;   // "Tessel Kelpie"
extern const QString editionText;   // the ver of the download-info request

// The endpoint: the one a run set, else KELPIE_UPDATE_ENDPOINT of the environment, else the one
// the build was configured with.
QString updateEndpoint();
void setUpdateEndpoint(const QString &address);   // empty: back to the environment or the build's
// The endpoint followed by "/act/update.aspx?pid=%1&ver=%2&os=%3".
QString updateRequestUrl(int pid, const QString &ver, int os);
// The two questions of this installation: the latest version, and where its setup lies.
QString latestVersionUrl();
QString downloadInfoUrl();

// Folder that receives the version folders of downloads: the program's directory unless a run
// set another (tests keep their downloads in a temporary folder).
QString programFolder();
void setProgramFolder(const QString &folder);
