// Runs in the page's own world.
Object.defineProperty(Navigator.prototype, 'globalPrivacyControl', {
  get() { return true; }, enumerable: true, configurable: true,
});
