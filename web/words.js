// The app's own words. The tree's titles come translated from the device;
// these follow the same setting (settings:/language).
const WORDS = {
  en: {
    home: 'Home',
    breadcrumb: 'Where you are',
    sources: 'Sources',
    language: 'Language',
    offline: 'Offline: reconnecting…',
    loading: 'Loading…',
    empty: 'Nothing here',
    more: 'More',
    back: 'Back',
    close: 'Close',
    dismiss: 'Dismiss',
    move: 'Move (drag, or Alt+Up/Down)',
    moved: 'Moved to position %1',
    nowPlaying: 'Now playing',
    nothingPlaying: 'Nothing playing',
    play: 'Play',
    pause: 'Pause',
    next: 'Next',
    previous: 'Previous',
    shuffle: 'Shuffle',
    repeatOff: 'Repeat: off',
    repeatAll: 'Repeat: all',
    repeatOne: 'Repeat: one',
    seek: 'Position',
    timeOf: '%1 of %2',
    volume: 'Volume',
    send: 'OK',
    playerError: 'Could not play (code %1)',
  },
  de: {
    home: 'Start',
    breadcrumb: 'Wo Sie sind',
    sources: 'Quellen',
    language: 'Sprache',
    offline: 'Offline: verbinde neu…',
    loading: 'Lädt…',
    empty: 'Hier ist nichts',
    more: 'Mehr',
    back: 'Zurück',
    close: 'Schließen',
    dismiss: 'Ausblenden',
    move: 'Verschieben (ziehen, oder Alt+Auf/Ab)',
    moved: 'Auf Position %1 verschoben',
    nowPlaying: 'Es läuft',
    nothingPlaying: 'Nichts läuft',
    play: 'Abspielen',
    pause: 'Pause',
    next: 'Weiter',
    previous: 'Zurück',
    shuffle: 'Zufall',
    repeatOff: 'Wiederholen: aus',
    repeatAll: 'Wiederholen: alle',
    repeatOne: 'Wiederholen: einen',
    seek: 'Position',
    timeOf: '%1 von %2',
    volume: 'Lautstärke',
    send: 'OK',
    playerError: 'Abspielen fehlgeschlagen (Code %1)',
  },
};

let current = 'en';

export function language() {
  return current;
}

export function setLanguage(lang) {
  current = WORDS[lang] ? lang : 'en';
  document.documentElement.lang = current;
  for (const el of document.querySelectorAll('[data-t]')) el.textContent = t(el.dataset.t);
  for (const el of document.querySelectorAll('[data-t-label]')) el.setAttribute('aria-label', t(el.dataset.tLabel));
}

export function t(key, ...args) {
  const text = WORDS[current][key] ?? WORDS.en[key] ?? key;
  return args.reduce((s, arg, i) => s.replace('%' + (i + 1), arg), text);
}
