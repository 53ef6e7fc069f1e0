document.querySelectorAll('video, audio').forEach((media) => media.pause());
