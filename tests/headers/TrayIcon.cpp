#include <tarn/Menu.h>
#include <tarn/TrayIcon.h>

using namespace tarn;

constexpr int ID_MAIL = 1, ID_EXIT = 2;
void openMail();

#include "TrayIcon.example"
