// The now-playing bar: what plays, where it is, and the controls. The host
// announces the position about once a second; between announcements the bar
// runs on at the pace the last two announcements showed, which is also right
// for an emulated player that runs faster than real time.
import { formatTime } from './dom.js';
import { value, setData, plain, i32 } from './api.js';
import { watch } from './live.js';
import { t } from './words.js';
import { artwork, subtitleOf } from './rows.js';

const MODES = {
  normal: [false, 'off'],
  shuffle: [true, 'off'],
  repeatAll: [false, 'all'],
  shuffleRepeatAll: [true, 'all'],
  repeatOne: [false, 'one'],
  shuffleRepeatOne: [true, 'one'],
};
const NEXT_REPEAT = { off: 'all', all: 'one', one: 'off' };
const REPEAT_WORDS = { off: 'repeatOff', all: 'repeatAll', one: 'repeatOne' };
const REPEAT_ICONS = { off: 'repeat', all: 'repeat', one: 'repeat-one' };

const $ = (id) => document.getElementById(id);

function modeName(shuffle, repeat) {
  return Object.keys(MODES).find((name) => MODES[name][0] === shuffle && MODES[name][1] === repeat);
}

export class NowPlaying {
  constructor(app) {
    this.app = app;
    this.status = {};
    this.mode = 'normal';
    this.positionMs = 0;
    this.positionAt = performance.now();
    this.rate = 1;
    this.seek = $('np-seek');
    this.volume = $('np-volume');
    $('np-play').onclick = () => this.playPause();
    // What plays leads to the list it plays from.
    $('np-track').onclick = () => this.status.container && app.go([{ path: this.status.container.path }]);
    $('np-next').onclick = () => this.control({ control: 'next' });
    $('np-prev').onclick = () => this.control({ control: 'previous' });
    $('np-shuffle').onclick = () => this.setMode(modeName(!MODES[this.mode][0], MODES[this.mode][1]));
    $('np-repeat').onclick = () => this.setMode(modeName(MODES[this.mode][0], NEXT_REPEAT[MODES[this.mode][1]]));
    this.seek.addEventListener('input', () => {
      this.seeking = true;
      this.paintTime(Number(this.seek.value));
    });
    this.seek.addEventListener('change', () => {
      this.seeking = false;
      this.control({ control: 'seek', positionMs: Math.round(Number(this.seek.value)) });
    });
    // The volume follows the slider while it moves, at most every 150 ms.
    this.volume.addEventListener('input', () => {
      this.adjusting = true;
      if (!this.volumeTimer) this.volumeTimer = setTimeout(() => this.sendVolume(), 150);
    });
    this.volume.addEventListener('change', () => {
      this.adjusting = false;
      this.sendVolume();
    });
    setInterval(() => this.paint(), 250);
  }

  async start() {
    await Promise.all([
      watch('value', 'player:/status', (e) => this.onStatus(e.value)),
      watch('value', 'player:/position', (e) => this.onPosition(plain(e.value))),
      watch('value', 'player:/playMode', (e) => this.onMode(plain(e.value))),
      watch('value', 'player:/volume', (e) => this.onVolume(plain(e.value))),
    ]);
    await this.refresh();
  }

  async refresh() {
    try {
      const [status, position, mode, volume] = await Promise.all(
        ['player:/status', 'player:/position', 'player:/playMode', 'player:/volume'].map((p) => value(p))
      );
      this.onStatus(status);
      this.onPosition(plain(position));
      this.onMode(plain(mode));
      this.onVolume(plain(volume));
    } catch (error) {
      this.showError(error.message);
    }
  }

  playingPath() {
    const track = this.status.track;
    return this.status.state && this.status.state !== 'stopped' && track ? track.path : null;
  }

  onStatus(status) {
    const before = this.playingPath();
    const trackChanged = JSON.stringify((this.status || {}).track) !== JSON.stringify((status || {}).track);
    this.status = status || {};
    if (trackChanged) {
      this.positionMs = 0;
      this.positionAt = performance.now();
      value('player:/position').then((p) => this.onPosition(plain(p)), () => {});
    }
    this.paintStatus();
    if (before !== this.playingPath()) this.app.playingChanged();
  }

  onPosition(ms) {
    const now = performance.now();
    const elapsed = now - this.positionAt;
    // Only the regular announcements tell the pace; a seek comes at once.
    if (this.status.state === 'playing' && ms > this.positionMs && elapsed > 500 && elapsed < 3000) {
      this.rate = (ms - this.positionMs) / elapsed;
    }
    this.positionMs = Number(ms) || 0;
    this.positionAt = now;
    this.paint();
  }

  onMode(name) {
    this.mode = MODES[name] ? name : 'normal';
    const [shuffle, repeat] = MODES[this.mode];
    const shuffleButton = $('np-shuffle');
    shuffleButton.setAttribute('aria-pressed', String(shuffle));
    const repeatButton = $('np-repeat');
    repeatButton.setAttribute('aria-pressed', String(repeat !== 'off'));
    repeatButton.dataset.tLabel = REPEAT_WORDS[repeat];
    repeatButton.setAttribute('aria-label', t(REPEAT_WORDS[repeat]));
    repeatButton.querySelector('use').setAttribute('href', '#i-' + REPEAT_ICONS[repeat]);
    this.paintControls();
  }

  onVolume(level) {
    if (!this.adjusting && typeof level === 'number') this.volume.value = level;
  }

  paintStatus() {
    const s = this.status;
    const track = s.track || {};
    const playing = s.state === 'playing';
    $('np-title').textContent = track.title || (s.state && s.state !== 'stopped' ? '' : t('nothingPlaying'));
    $('np-sub').textContent = s.error ? s.error.message || t('playerError', s.error.code) : subtitleOf(track);
    $('np-art').replaceWith(Object.assign(artwork(track.icon), { id: 'np-art' }));
    const play = $('np-play');
    play.dataset.tLabel = playing ? 'pause' : 'play';
    play.setAttribute('aria-label', t(play.dataset.tLabel));
    play.querySelector('use').setAttribute('href', playing ? '#i-pause' : '#i-play');
    document.title = track.title && s.state !== 'stopped' ? `${track.title} · Vexa` : 'Vexa';
    this.paintControls();
    this.paint();
  }

  paintControls() {
    const s = this.status;
    const controls = s.controls || {};
    const modes = controls.playMode || {};
    const active = !!s.state && s.state !== 'stopped';
    $('np-play').disabled = !s.track || !s.container;
    $('np-track').disabled = !s.container || !s.container.path;
    $('np-next').disabled = !active || !controls.next_;
    $('np-prev').disabled = !active || !controls.previous;
    this.seek.disabled = !active || !controls.seekTime || !(s.durationMs > 0);
    const [shuffle, repeat] = MODES[this.mode];
    $('np-shuffle').disabled = !modes[modeName(!shuffle, repeat)] && modeName(!shuffle, repeat) !== 'normal';
    const next = modeName(shuffle, NEXT_REPEAT[repeat]);
    $('np-repeat').disabled = !modes[next] && next !== 'normal';
  }

  currentMs() {
    const duration = this.status.durationMs || 0;
    let ms = this.positionMs;
    if (this.status.state === 'playing') ms += (performance.now() - this.positionAt) * this.rate;
    return duration > 0 ? Math.min(ms, duration) : ms;
  }

  paint() {
    if (this.seeking) return;
    const ms = this.currentMs();
    this.seek.max = String(this.status.durationMs || 0);
    this.seek.value = String(ms);
    this.paintTime(ms);
  }

  paintTime(ms) {
    const duration = this.status.durationMs || 0;
    $('np-time').textContent = formatTime(ms);
    $('np-duration').textContent = formatTime(duration);
    this.seek.setAttribute('aria-valuetext', t('timeOf', formatTime(ms), formatTime(duration)));
  }

  playPause() {
    const s = this.status;
    if (s.state === 'playing') return this.control({ control: 'pause' });
    if (s.state === 'paused') return this.control({ control: 'resume' });
    const index = plain(s.track && s.track.value);
    return this.control({ control: 'play', index: typeof index === 'number' ? index : 0, container: s.container, track: s.track });
  }

  async control(command) {
    await this.send('player:/control', command);
  }

  async setMode(name) {
    if (name) await this.send('player:/playMode', { type: 'playerPlayMode', playerPlayMode: name });
  }

  async sendVolume() {
    clearTimeout(this.volumeTimer);
    this.volumeTimer = null;
    await this.send('player:/volume', i32(Number(this.volume.value)));
  }

  async send(path, val) {
    this.showError(null);
    try {
      await setData(path, val);
    } catch (error) {
      this.showError(error.message);
    }
  }

  showError(message) {
    const alert = $('np-alert');
    alert.hidden = !message;
    alert.textContent = message || '';
  }

  relabel() {
    this.onMode(this.mode);
    this.paintStatus();
  }
}
