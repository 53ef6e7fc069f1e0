// What the frame's media do, as bits: 1 there is some, 2 one plays, 4 one is heard, 8 one is a video.
[...document.querySelectorAll('video, audio')].reduce((bits, media) => {
  if (media.paused || media.ended || media.readyState <= 2) return bits | 1;
  const isLoud = !media.muted && media.volume > 0;
  return bits | 3 | (isLoud ? 4 : 0) | (media.localName === 'video' ? 8 : 0);
}, 0);
