#include <gtk/gtk.h>

#include <clocale>

#include "App/Application.h"
#include "Base/Texts.h"

int main(int count, char** arguments) {
  setlocale(LC_ALL, "");  // for what is printed before the toolkit does so
  orvel::useTextCatalogs(orvel::programFolder() / "../share/locale");
  auto options = orvel::StartOptions::parse(count, arguments);
  if (!options) return options.error().exitCode;
  gtk_init();
  orvel::Application application;
  return application.run(*std::move(options));
}
