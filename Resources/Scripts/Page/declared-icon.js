// The address of the page's best icon, or "" without one. A picture of many pixels comes first; one
// of unknown size is taken for 32, and drawings are the last choice.
(() => {
  const score = (link) => {
    if (/\.svg(\?|$)/i.test(link.href) || link.type === 'image/svg+xml') return 1;
    if (link.rel.toLowerCase().includes('apple-touch-icon')) return 20;
    const size = Number.parseInt((link.getAttribute('sizes') ?? '').split('x')[0], 10);
    return Number.isNaN(size) ? 32 : Math.min(size, 256) + 1;
  };
  const links = [...document.querySelectorAll(
    'link[rel~="icon"], link[rel="apple-touch-icon"], link[rel="apple-touch-icon-precomposed"]')];
  return links.sort((a, b) => score(b) - score(a))[0]?.href ?? '';
})();
