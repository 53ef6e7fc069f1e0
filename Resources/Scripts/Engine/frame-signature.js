// Signs the messages of its world with the frame that they come from. The frame's number is drawn
// in the isolated world, out of the page's reach.
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
