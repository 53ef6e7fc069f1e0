#include "Engine/WebKitGtk/NavigationClassifier.h"

#include <utility>

namespace orvel {

namespace {

constexpr Duration kReportLifetime = 2s;
constexpr size_t kMostReports = 32;

}  // namespace

void NavigationClassifier::noteReport(NavigationReport report, Instant now) {
  reports_.push_back({std::move(report), now});
  if (reports_.size() > kMostReports) reports_.pop_front();
}

void NavigationClassifier::noteProgramLoad(std::string address) {
  programLoad_ = std::move(address);
}

NavigationClassifier::Verdict NavigationClassifier::classify(const Question& question,
                                                             Instant now) {
  if (question.isRedirect)
    return {question.address == question.viewAddress ? Target::MainFrame : Target::SubFrame, {}};
  if (question.isHistory) return {Target::MainFrame, {}};
  if (programLoad_ == question.address) {
    programLoad_.reset();
    return {Target::MainFrame, {}};
  }
  while (!reports_.empty() && now - reports_.front().time > kReportLifetime) reports_.pop_front();
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
