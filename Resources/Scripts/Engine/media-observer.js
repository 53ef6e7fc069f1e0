// Reports that something of the frame may have begun or ended to play.
(() => {
  const report = () => webkit.messageHandlers.orvelMedia.postMessage(0);
  for (const event of ['playing', 'pause', 'ended', 'emptied', 'volumechange'])
    document.addEventListener(event, report, true);
  addEventListener('pagehide', () => { if (document.querySelector('video, audio')) report(); });
  addEventListener('pageshow', (event) => { if (event.persisted) report(); });
})();
