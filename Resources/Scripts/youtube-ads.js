// Takes the advertisements out of YouTube's player.
//
// Network rules can't: the player's answers hold the advertisements and the film in one piece, from
// one host. So this script, which runs at document start in the page's own world and in every frame,
//
//  1. deletes the fields that place advertisements from every answer before the page reads it: from
//     JSON.parse, from fetch's and XMLHttpRequest's JSON, and from the answer that the page itself
//     holds as a global;
//  2. for what still gets through, presses the skip button and runs a film's advertisement to its
//     end;
//  3. hides the boxes on the page that hold nothing but advertisements.
//
// Nothing here may throw into the page: where something isn't as expected, the page goes on as if
// this script weren't there.
(() => {
  'use strict';

  const sites = ['youtube.com', 'youtube-nocookie.com'];
  const host = location.hostname;
  if (!sites.some((site) => host === site || host.endsWith('.' + site))) return;

  // A page can run user scripts twice, as when a frame's document is written anew.
  const mark = Symbol.for('orvel.youtube-ads');
  if (window[mark]) return;
  Object.defineProperty(window, mark, { value: true });

  // --- Answers -------------------------------------------------------------------------------------

  const placements = ['adPlacements', 'playerAds', 'adSlots', 'adBreakHeartbeatParams'];
  const mentionsPlacement = /"(?:adPlacements|playerAds|adSlots|adBreakHeartbeatParams)"/;

  // Deletes the placements from an answer. They stand at its top, in a member, or in the members of
  // a list of answers: no deeper, so nothing is walked.
  const clean = (answer) => {
    try {
      const parts = Array.isArray(answer) ? answer : [answer];
      for (const part of parts) {
        for (const holder of [part, part?.playerResponse, part?.response?.playerResponse]) {
          if (holder === null || typeof holder !== 'object') continue;
          for (const name of placements) if (name in holder) delete holder[name];
        }
      }
    } catch {
      // A frozen or unusual answer stays as it is.
    }
    return answer;
  };

  // Replaces a method by one that looks the same from outside. `replacement` gets the original.
  const wrap = (owner, name, replacement) => {
    const original = owner?.[name];
    if (typeof original !== 'function') return;
    const wrapped = new Proxy(original, {
      apply: (target, self, args) => replacement(target, self, args),
    });
    try {
      owner[name] = wrapped;
    } catch {
      // A page that froze it keeps it.
    }
  };

  const nativeParse = JSON.parse;
  const nativeStringify = JSON.stringify;

  wrap(JSON, 'parse', (target, self, args) => clean(Reflect.apply(target, self, args)));

  // Covers fetch: its answers are read by one of these.
  wrap(Response.prototype, 'json', (target, self, args) =>
    Reflect.apply(target, self, args).then(clean));

  const cleanText = (text) => {
    if (typeof text !== 'string' || !mentionsPlacement.test(text)) return text;
    try {
      return nativeStringify(clean(nativeParse(text)));
    } catch {
      return text;
    }
  };

  wrap(Response.prototype, 'text', (target, self, args) =>
    Reflect.apply(target, self, args).then(cleanText));

  // Replaces a getter of XMLHttpRequest. The page may read an answer many times: each is cleaned
  // once.
  const wrapGetter = (name, change) => {
    const property = Object.getOwnPropertyDescriptor(XMLHttpRequest.prototype, name);
    if (typeof property?.get !== 'function' || !property.configurable) return;
    const cleaned = new WeakMap();
    Object.defineProperty(XMLHttpRequest.prototype, name, {
      ...property,
      get() {
        const value = property.get.call(this);
        if (this.readyState !== XMLHttpRequest.DONE) return value;
        const known = cleaned.get(this);
        if (known !== undefined && known.from === value) return known.to;
        const to = change(value);
        cleaned.set(this, { from: value, to });
        return to;
      },
    });
  };

  wrapGetter('responseText', cleanText);
  wrapGetter('response', (value) =>
    typeof value === 'string' ? cleanText(value) : value?.constructor === Object ? clean(value) : value);

  // The first film's answer stands in the page itself.
  let initial;
  try {
    Object.defineProperty(window, 'ytInitialPlayerResponse', {
      configurable: true,
      enumerable: true,
      get: () => initial,
      set: (answer) => { initial = clean(answer); },
    });
  } catch {
    // Already there and fixed: the player's own request brings the rest.
  }

  // --- The player ----------------------------------------------------------------------------------

  const skipButtons = '.ytp-ad-skip-button, .ytp-ad-skip-button-modern, .ytp-skip-ad-button';

  const passAdvertisement = () => {
    try {
      const player = document.querySelector('.html5-video-player.ad-showing');
      if (player === null) return;
      player.querySelector(skipButtons)?.click();
      const video = player.querySelector('video');
      if (video !== null && Number.isFinite(video.duration) && video.duration > 0)
        video.currentTime = video.duration;
    } catch {
      // The next change of the player tries again.
    }
  };

  // The player's class tells when an advertisement begins. Only it and its buttons are watched, and
  // at most once in a frame.
  const watch = () => {
    const player = document.querySelector('.html5-video-player');
    if (player === null) return false;
    let isDue = false;
    new MutationObserver(() => {
      if (isDue || !player.classList.contains('ad-showing')) return;
      isDue = true;
      requestAnimationFrame(() => {
        isDue = false;
        passAdvertisement();
      });
    }).observe(player, { attributes: true, attributeFilter: ['class'], childList: true, subtree: true });
    passAdvertisement();
    return true;
  };

  // --- The page ------------------------------------------------------------------------------------

  const boxes = [
    '#masthead-ad',
    '#player-ads',
    'ytd-ad-slot-renderer',
    'ytd-banner-promo-renderer',
    'ytd-display-ad-renderer',
    'ytd-in-feed-ad-layout-renderer',
    'ytd-promoted-sparkles-web-renderer',
    'ytd-rich-item-renderer:has(> #content > ytd-ad-slot-renderer)',
    'ytm-promoted-sparkles-web-renderer',
    '.ytp-ad-overlay-container',
  ];

  const hideBoxes = () => {
    const style = document.createElement('style');
    // One rule each: a selector that an engine doesn't know loses only itself.
    style.textContent = boxes.map((box) => `${box} { display: none !important }`).join('\n');
    (document.head ?? document.documentElement).append(style);
  };

  const begin = () => {
    try {
      hideBoxes();
      if (watch()) return;
      // Moving from the front page to a film makes the player without a new document.
      const search = new MutationObserver(() => {
        if (watch()) search.disconnect();
      });
      search.observe(document.documentElement, { childList: true, subtree: true });
    } catch {
      // A document without elements has nothing to hide.
    }
  };

  if (document.readyState === 'loading') document.addEventListener('DOMContentLoaded', begin, { once: true });
  else begin();
})();
