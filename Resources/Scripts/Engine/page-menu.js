// Tells what of the frame the page's menu is for, and does to its media what is chosen there.
(() => {
  let media = null;
  const passwordSelected = (field) => field?.localName === 'input' && field.type === 'password';
  const selected = () => {
    const field = document.activeElement;
    if (passwordSelected(field)) return '';
    if (field?.localName === 'textarea' || (field?.localName === 'input' && field.selectionStart != null))
      return field.value.slice(field.selectionStart, field.selectionEnd);
    return String(getSelection() ?? '');
  };
  const actions = {
    playing: () => media.paused ? media.play().catch(() => {}) : media.pause(),
    muted: () => { media.muted = !media.muted; },
    looping: () => { media.loop = !media.loop; },
    controls: () => { media.controls = !media.controls; },
  };
  globalThis.__orvelMenu = {
    // As JSON text.
    describe(node) {
      const element = node?.nodeType === Node.ELEMENT_NODE ? node : node?.parentElement;
      media = element?.closest?.('video, audio') ?? null;
      const box = element?.getBoundingClientRect?.();
      return JSON.stringify({
        selection: selected().slice(0, 16384),
        text: element?.closest?.('a')?.innerText?.slice(0, 1024) ?? '',
        at: box && self === top ? [box.x + Math.min(box.width, 24), box.y + Math.min(box.height, 24)] : null,
        media: media && {
          video: media.localName === 'video', paused: media.paused, muted: media.muted, looping: media.loop,
          controls: media.controls,
        },
      });
    },
    // Another frame's menu is the latest.
    forget() { media = null; },
    control(action) { if (media) actions[action](); },
  };
})();
