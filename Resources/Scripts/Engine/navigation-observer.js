// Reports each trusted click on a link and each submission of a form, with the frame that it will
// navigate, so that the decision knows what the engine itself does not tell.
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
