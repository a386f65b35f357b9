#include "static_ip_dlg.h"

static_ip_dlg::static_ip_dlg(QWidget *parent) : QDialog(parent) {}
