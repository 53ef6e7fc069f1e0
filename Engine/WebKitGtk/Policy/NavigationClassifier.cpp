#include "Engine/WebKitGtk/Policy/NavigationClassifier.h"

#include <utility>

namespace orvel {

namespace {

constexpr Duration kLifetime = 2s;
constexpr size_t kMaxReports = 32;

}  // namespace

void NavigationClassifier::noteReport(NavigationReport report, Instant now) {
  reports_.push_back({std::move(report), now});
  if (reports_.size() > kMaxReports) reports_.pop_front();
}

void NavigationClassifier::noteProgramLoad(std::string address, Instant now) {
  programLoad_ = ProgramLoad{std::move(address), now};
}

NavigationClassifier::Verdict NavigationClassifier::classify(const Question& question,
                                                             Instant now) {
  if (question.isRedirect) {
    const bool isMainFrame =
        question.isMainFrameWaiting && question.address == question.viewAddress;
    return {isMainFrame ? Target::MainFrame : Target::SubFrame, {}};
  }
  if (programLoad_ && now - programLoad_->time > kLifetime) programLoad_.reset();
  if (programLoad_ && programLoad_->address == question.address) {
    programLoad_.reset();
    return {Target::MainFrame, {}};
  }
  while (!reports_.empty() && now - reports_.front().time > kLifetime) reports_.pop_front();
  for (auto entry = reports_.begin(); entry != reports_.end(); ++entry) {
    if (entry->report.target != question.address) continue;
    const NavigationReport report = std::move(entry->report);
    reports_.erase(entry);
    using Destination = NavigationReport::Destination;
    return {report.destination == Destination::MainFrame  ? Target::MainFrame
            : report.destination == Destination::SubFrame ? Target::SubFrame
                                                          : Target::NewWindow,
            report.frame};
  }
  return {};
}

}  // namespace orvel
