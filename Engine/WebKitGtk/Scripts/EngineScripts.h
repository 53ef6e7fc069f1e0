#pragma once

// The scripts that the engine's implementation runs in every frame for its own purposes.
namespace orvel::engine_scripts {

// The isolated world of the scripts below.
inline constexpr const char kWorld[] = "orvel-engine";
inline constexpr const char kNavigationHandler[] = "orvelNavigation";

// Signs the messages of its world with the frame that they come from. The frame's number is drawn
// in the isolated world, out of the page's reach.
inline constexpr const char kPrelude[] = R"js(
(() => {
  const handlers = window.webkit?.messageHandlers;
  if (!handlers || window.__orvelFrame) return;
  let host = '';
  try { host = new URL(self.origin).hostname; } catch {}
  const frame = {
    id: crypto.getRandomValues(new Uint32Array(2)).reduce((a, b) => (a & 0x1fffff) * 4294967296 + b),
    main: self === top,
    host,
  };
  Object.defineProperty(window, '__orvelFrame', { value: frame });
  const prototype = window.WebKitUserMessageHandler?.prototype ??
      window.UserMessageHandler?.prototype ?? Object.getPrototypeOf(handlers.orvelNavigation ?? handlers[Object.keys(handlers)[0]]);
  const post = prototype.postMessage;
  prototype.postMessage = function (body) {
    let text = 'null';
    try { text = JSON.stringify(body) ?? 'null'; } catch {}
    return post.call(this, JSON.stringify({ frame, body: text }));
  };
})();
)js";

// Reports each trusted click on a link and each submission of a form, with the frame that it will
// navigate, so that the decision knows what the engine itself does not tell.
inline constexpr const char kNavigationObserver[] = R"js(
(() => {
  const destination = (name) => {
    const target = name || document.querySelector('base[target]')?.target || '';
    switch (target.toLowerCase()) {
      case '': case '_self': return self === top ? 'main' : 'sub';
      case '_top': return 'main';
      case '_parent': return parent === top ? 'main' : 'sub';
      case '_blank': return 'new';
    }
    if (target === window.name) return self === top ? 'main' : 'sub';
    try { if (top[target] && typeof top[target].postMessage === 'function') return 'sub'; } catch {}
    return 'new';
  };
  const report = (address, target) => {
    if (address) webkit.messageHandlers.orvelNavigation.postMessage({ address: String(address), destination: destination(target) });
  };
  const click = (event) => {
    if (!event.isTrusted) return;
    const link = event.composedPath().find((node) => (node.localName === 'a' || node.localName === 'area') && node.href);
    if (link) report(link.href.baseVal ?? link.href, link.target.baseVal ?? link.target);
  };
  addEventListener('click', click, true);
  addEventListener('auxclick', click, true);
  addEventListener('submit', (event) => {
    if (!event.isTrusted) return;
    const button = event.submitter;
    const form = event.target;
    report(button?.hasAttribute('formaction') ? button.formAction : form.action,
           button?.hasAttribute('formtarget') ? button.formTarget : form.target);
  }, true);
})();
)js";

// Reports that something of the frame may have begun or ended to play.
inline constexpr const char kMediaHandler[] = "orvelMedia";
inline constexpr const char kMediaObserver[] = R"js(
(() => {
  const report = () => webkit.messageHandlers.orvelMedia.postMessage(0);
  for (const event of ['playing', 'pause', 'ended', 'emptied', 'volumechange'])
    document.addEventListener(event, report, true);
  addEventListener('pagehide', () => { if (document.querySelector('video, audio')) report(); });
  addEventListener('pageshow', (event) => { if (event.persisted) report(); });
})();
)js";

// Runs in the page's own world.
inline constexpr const char kPrivacySignal[] = R"js(
Object.defineProperty(Navigator.prototype, 'globalPrivacyControl', {
  get() { return true; }, enumerable: true, configurable: true,
});
)js";

}  // namespace orvel::engine_scripts
