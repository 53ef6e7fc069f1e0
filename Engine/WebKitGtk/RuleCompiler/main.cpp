// Compiles content rules in a process of its own, so that neither the time nor the memory that it
// takes is felt in the browser, and nothing that goes wrong here ends it.
//
//   orvel-rule-compiler FOLDER IDENTIFIER < RULES
//
// RULES is a file with the rules as JSON; the compiled list goes into the store in FOLDER. Ends
// with status 0, or with 1 and the reason on standard output.

#include <sys/prctl.h>
#include <unistd.h>
#include <webkit/webkit.h>

#include <csignal>
#include <cstdio>

namespace {

constexpr int kNiceness = 10;
constexpr int kMaxReason = 2000;

struct Run {
  GMainLoop* loop;
  int status = 1;
};

int fail(const char* reason) {
  std::printf("%.*s", kMaxReason, reason);
  return 1;
}

void saved(GObject* store, GAsyncResult* result, gpointer data) {
  auto* run = static_cast<Run*>(data);
  GError* error = nullptr;
  auto* list = webkit_user_content_filter_store_save_finish(WEBKIT_USER_CONTENT_FILTER_STORE(store),
                                                            result, &error);
  if (list) {
    webkit_user_content_filter_unref(list);
    run->status = 0;
  } else {
    fail(error->message);
    g_error_free(error);
  }
  g_main_loop_quit(run->loop);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return fail("wants a folder and an identifier");
  // The browser's end, however it comes, is this program's.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (nice(kNiceness) == -1) g_debug("cannot be nice");

  GMappedFile* rules = g_mapped_file_new_from_fd(STDIN_FILENO, FALSE, nullptr);
  if (!rules) return fail("cannot read the rules");
  GBytes* json = g_mapped_file_get_bytes(rules);
  auto* store = webkit_user_content_filter_store_new(arguments[1]);
  Run run{g_main_loop_new(nullptr, FALSE)};
  webkit_user_content_filter_store_save(store, arguments[2], json, nullptr, saved, &run);
  g_main_loop_run(run.loop);

  g_main_loop_unref(run.loop);
  g_object_unref(store);
  g_bytes_unref(json);
  g_mapped_file_unref(rules);
  return run.status;
}
