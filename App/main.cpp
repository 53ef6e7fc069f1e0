#include <gtk/gtk.h>

#include "App/Application.h"

int main(int count, char** arguments) {
  gtk_init();
  orvel::Application application;
  return application.run({arguments + 1, arguments + count});
}
