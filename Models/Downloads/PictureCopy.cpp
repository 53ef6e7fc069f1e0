#include "Models/Downloads/PictureCopy.h"

#include "Base/Texts.h"
#include "Models/Downloads/Downloads.h"
#include "Models/Store/BrowserStore.h"

namespace orvel {

void PictureCopy::start(BrowserStore& store, const BrowserTab& tab, const URL& picture) {
  const auto download = tab.profile->dataStore()->startDownload(pageRequest(tab, picture));
  if (!download) return;
  const auto copy = std::make_shared<PictureCopy>(store);
  copy->self_ = copy;
  download->setDelegate(copy);
}

void PictureCopy::decideDestination(
    const std::shared_ptr<Download>& download, const std::string&,
    std::function<void(std::optional<std::filesystem::path>)> answer) {
  if (download->expectedBytes().value_or(0) > kMaxBytes) return answer(std::nullopt);
  const auto folder = AppPaths::transient();
  store_.services().files.files().createFolders(folder);
  file_ = folder / ("picture-" + UUID::random().text());
  answer(file_);
}

void PictureCopy::didFinish(const std::shared_ptr<Download>&) {
  const auto image = std::make_shared<ImageRef>();
  store_.services().scheduler.runInBackground(
      [image, file = file_, &files = store_.services().files.files()] {
        const auto contents = files.read(file, kMaxBytes);
        if (contents) *image = Image::decode(*contents, kMaxSide);
        files.remove(file);
      },
      [image, self = self_, alive = store_.weak_from_this()] {
        if (alive.lock()) self->end(*image);
      },
      WorkPriority::UserInitiated);
}

void PictureCopy::didFail(const std::shared_ptr<Download>&, const LoadError&) {
  if (!file_.empty()) store_.services().files.files().remove(file_);
  end(nullptr);
}

void PictureCopy::end(const ImageRef& image) {
  const auto self = std::move(self_);
  if (image) store_.services().desktop.clipboard.setImage(image);
  store_.showToast(image ? _("Picture copied") : _("The picture could not be copied"));
}

}  // namespace orvel
