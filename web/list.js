// A list of the browse tree of any length. Rows are fetched a page at a time
// as they come into view and only those near the view are in the page, so a
// queue of ten thousand scrolls like one of ten. Changes announced on the
// event stream refetch what is visible.
import { h, icon } from './dom.js';
import { setData, answeredPath } from './api.js';
import { watch } from './live.js';
import { t } from './words.js';
import { rowContent, moveTarget, typeOf } from './rows.js';

const PAGE = 50;
const OVERSCAN = 10;
const LONG_PRESS_MS = 550;

export class ListView {
  // source: { path, load(from, to) } where load answers like GET rows.
  // app: navigation, menus, playback and the playing track's path.
  constructor(source, app) {
    this.source = source;
    this.app = app;
    this.pages = new Map();
    this.loading = new Map();
    this.generation = 0;
    this.count = null;
    this.header = {};
    this.rendered = new Map();
    this.focusIndex = 0;
    this.drag = null;
    this.alert = h('div', { class: 'alert', role: 'alert', hidden: true });
    this.status = h('p', { class: 'status', role: 'status', text: t('loading') });
    this.spacer = h('div', { class: 'spacer' });
    this.scroller = h('div', { class: 'scroller', role: 'list', 'aria-label': source.title || '' }, this.spacer);
    this.announcer = h('div', { class: 'visually-hidden', 'aria-live': 'polite' });
    this.el = h('section', { class: 'list-view' }, this.alert, this.status, this.scroller, this.announcer);
    this.scroller.addEventListener('scroll', () => this.schedule());
    this.scroller.addEventListener('keydown', (e) => this.onKey(e));
    this.scroller.addEventListener('focusin', (e) => {
      const rowEl = e.target.closest('.row');
      if (rowEl) this.focusIndex = Number(rowEl.dataset.index);
    });
    this.resize = new ResizeObserver(() => {
      const before = this.rowH;
      this.rowH = 0;
      if (before && this.rowHeight() !== before) this.repaint();
      else this.schedule();
    });
    this.resize.observe(this.scroller);
  }

  // takeFocus: the list was opened from the page, whose focused row is gone
  // now; the keyboard carries on in this list.
  async start(takeFocus) {
    if (this.source.path) this.unwatch = await watch('rows', this.source.path, () => this.refresh());
    await this.refresh();
    if (takeFocus && document.activeElement === document.body && this.rendered.has(0)) focusable(this.rendered.get(0).el).focus({ preventScroll: true });
  }

  destroy() {
    this.destroyed = true;
    if (this.unwatch) this.unwatch();
    this.resize.disconnect();
    this.endDrag(false);
  }

  // One height for every row keeps the place of row i a multiplication.
  rowHeight() {
    if (!this.rowH && this.scroller.isConnected) this.rowH = parseFloat(getComputedStyle(this.scroller).getPropertyValue('--row-h'));
    return this.rowH || 56;
  }

  visibleRange() {
    const rowH = this.rowHeight();
    const first = Math.floor(this.scroller.scrollTop / rowH);
    const last = Math.ceil((this.scroller.scrollTop + this.scroller.clientHeight) / rowH);
    return [Math.max(0, first - OVERSCAN), last + OVERSCAN];
  }

  async loadPage(page) {
    const answer = await this.source.load(page * PAGE, page * PAGE + PAGE - 1);
    this.count = answer.rowsCount ?? (answer.rows || []).length;
    this.header = answer.roles || {};
    if (answer.title !== undefined) this.app.titled(this, answer.title);
    return answer.rows || [];
  }

  // Refetches the visible pages; the rest of the cache is dropped. Calls
  // that come while one runs are folded into one more run.
  refresh() {
    if (this.refreshing) {
      this.again = true;
      return this.refreshing;
    }
    this.refreshing = (async () => {
      do {
        this.again = false;
        const generation = ++this.generation;
        const [from, to] = this.visibleRange();
        const last = this.count === null ? 0 : Math.max(0, Math.min(to, this.count - 1));
        const fresh = new Map();
        try {
          for (let page = Math.floor(from / PAGE); page <= Math.floor(last / PAGE); page++) fresh.set(page, await this.loadPage(page));
        } catch (error) {
          if (this.count === null || error.status === 404) this.fail(error);
          continue;
        }
        if (generation !== this.generation || this.destroyed) continue;
        this.failure = null;
        this.pages = fresh;
        this.render();
      } while (this.again && !this.destroyed);
      this.refreshing = null;
    })();
    return this.refreshing;
  }

  fail(error) {
    this.count = 0;
    this.pages = new Map();
    this.failure = error.message;
    this.render();
  }

  ensurePage(page) {
    if (this.pages.has(page) || this.loading.has(page)) return;
    const generation = this.generation;
    this.loading.set(
      page,
      this.loadPage(page)
        .then((rows) => {
          if (generation !== this.generation || this.destroyed) return;
          this.pages.set(page, rows);
          this.render();
        })
        .catch(() => {})
        .finally(() => this.loading.delete(page))
    );
  }

  schedule() {
    if (this.frame) return;
    this.frame = requestAnimationFrame(() => {
      this.frame = null;
      if (!this.destroyed) this.render();
    });
  }

  rowAt(index) {
    const page = this.pages.get(Math.floor(index / PAGE));
    return page ? page[index % PAGE] : undefined;
  }

  render() {
    const count = this.count || 0;
    const rowH = this.rowHeight();
    this.spacer.style.height = count * rowH + 'px';
    this.status.hidden = this.count !== 0 && this.count !== null;
    if (this.count === 0) this.status.textContent = this.failure || t('empty');
    const [from, wanted] = this.visibleRange();
    const to = Math.min(wanted, count - 1);
    for (const [index, entry] of this.rendered) {
      if ((index < from || index > to) && !(this.drag && this.drag.from === index)) {
        entry.el.remove();
        this.rendered.delete(index);
      }
    }
    for (let index = from; index <= to; index++) {
      const row = this.rowAt(index);
      if (row === undefined) this.ensurePage(Math.floor(index / PAGE));
      const playing = !!row && !!row.path && row.path === this.app.playingPath();
      const key = row === undefined ? '' : JSON.stringify(row) + playing + count;
      const entry = this.rendered.get(index);
      if (entry && entry.key === key) continue;
      const el = row === undefined ? h('div', { class: 'row placeholder', role: 'listitem', tabindex: '-1' }) : this.buildRow(index, row, playing, count);
      el.dataset.index = index;
      el.style.transform = `translateY(${index * rowH}px)`;
      if (entry) {
        const hadFocus = entry.el.contains(document.activeElement);
        entry.el.replaceWith(el);
        if (hadFocus) focusable(el).focus({ preventScroll: true });
      } else {
        this.scroller.append(el);
      }
      this.rendered.set(index, { el, key });
    }
  }

  // The playing track changed: only its rows change.
  repaint() {
    for (const entry of this.rendered.values()) entry.key = null;
    this.render();
  }

  buildRow(index, row, playing, count) {
    const type = typeOf(row);
    const movable = moveTarget(row) !== null;
    const el = h('div', {
      class: `row ${type}${playing ? ' playing' : ''}`,
      role: 'listitem',
      // Headers and separators take the focus too, so arrows pass them.
      tabindex: '-1',
      'aria-posinset': index + 1,
      'aria-setsize': count,
      'aria-current': playing ? 'true' : null,
    });
    if (movable) {
      const handle = h('button', { type: 'button', class: 'icon-button handle', 'aria-label': t('move'), 'aria-keyshortcuts': 'Alt+ArrowUp Alt+ArrowDown' }, icon('grip'));
      handle.addEventListener('pointerdown', (e) => this.beginDrag(e, index, row));
      el.append(handle);
    }
    el.append(...rowContent(row, this.actions(index)));
    if (row.context && row.context.path) this.menuGestures(el, row);
    return el;
  }

  actions(index) {
    return {
      open: (row) => this.app.open(row.path, row.title),
      canPlay: () => this.canPlay(),
      play: (row, anchor) => (this.canPlay() ? this.app.play(this.header, row, index) : this.app.menu(row.context, anchor)),
      menu: (row, anchor) => this.app.menu(row.context, anchor),
      command: (row, value, anchor) => this.command(row, value, anchor),
      query: (row, q) => this.app.query(row, q),
    };
  }

  canPlay() {
    const meta = this.header.mediaData && this.header.mediaData.metaData;
    return !!(meta && meta.playLogicPath);
  }

  menuGestures(el, row) {
    el.addEventListener('contextmenu', (e) => {
      e.preventDefault();
      this.app.menu(row.context, e);
    });
    el.addEventListener('pointerdown', (e) => {
      if (e.button !== 0 || e.target.closest('.handle, input')) return;
      const start = { x: e.clientX, y: e.clientY };
      const cancel = () => {
        clearTimeout(timer);
        el.removeEventListener('pointerup', cancel);
        el.removeEventListener('pointercancel', cancel);
        el.removeEventListener('pointermove', moved);
      };
      const moved = (m) => Math.hypot(m.clientX - start.x, m.clientY - start.y) > 10 && cancel();
      const timer = setTimeout(() => {
        cancel();
        // The release that ends a long press is not a click.
        el.addEventListener('click', (c) => c.stopPropagation(), { capture: true, once: true });
        this.app.menu(row.context, { clientX: start.x, clientY: start.y, target: el });
      }, LONG_PRESS_MS);
      el.addEventListener('pointerup', cancel);
      el.addEventListener('pointercancel', cancel);
      el.addEventListener('pointermove', moved);
    });
  }

  async command(row, value, anchor) {
    this.showError(null);
    try {
      const answer = await setData(row.path, value);
      if (anchor && anchor.tagName === 'INPUT') anchor.value = '';
      const target = answeredPath(answer);
      if (target) this.app.open(target, row.title);
      return true;
    } catch (error) {
      this.showError(error.message);
      return false;
    }
  }

  showError(message) {
    this.alert.hidden = !message;
    this.alert.replaceChildren();
    if (message) {
      this.alert.append(
        h('span', { dir: 'auto', text: message }),
        h('button', { type: 'button', class: 'icon-button', 'aria-label': t('dismiss'), onclick: () => this.showError(null) }, icon('close'))
      );
    }
  }

  async move(row, to, keepFocus) {
    const target = moveTarget(row);
    if (!target || to < 0 || to >= this.count || to === target.seqnum) return;
    const ok = await this.command({ path: 'playlists:/move-items' }, { plid: target.plid, items: [target.seqnum], to });
    if (!ok) return;
    this.announcer.textContent = t('moved', to + 1);
    if (keepFocus) this.focusIndex = to;
    await this.refresh();
    if (keepFocus) this.focusRow(to);
  }

  // Moves from the keyboard wait for the one before and its refreshed rows:
  // a row's place is only known again once the list was fetched anew.
  keyMove(step) {
    this.keyMoves = (this.keyMoves || Promise.resolve()).then(() => {
      const row = this.rowAt(this.focusIndex);
      return row && moveTarget(row) ? this.move(row, this.focusIndex + step, true) : null;
    });
  }

  onKey(e) {
    const rowEl = e.target.closest('.row');
    // In a field only Up and Down leave the row; the other keys edit.
    if (!rowEl || (e.target.tagName === 'INPUT' && (e.altKey || (e.key !== 'ArrowUp' && e.key !== 'ArrowDown')))) return;
    const index = Number(rowEl.dataset.index);
    const page = Math.max(1, Math.floor(this.scroller.clientHeight / this.rowHeight()) - 1);
    const moves = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page };
    if (e.altKey && (e.key === 'ArrowUp' || e.key === 'ArrowDown')) {
      this.keyMove(moves[e.key]);
    } else if (e.key in moves) {
      this.focusRow(index + moves[e.key]);
    } else if (e.key === 'Home' || e.key === 'End') {
      this.focusRow(e.key === 'Home' ? 0 : (this.count || 1) - 1);
    } else {
      return;
    }
    e.preventDefault();
  }

  focusRow(index) {
    const i = Math.max(0, Math.min(index, (this.count || 1) - 1));
    const rowH = this.rowHeight();
    const s = this.scroller;
    if (i * rowH < s.scrollTop) s.scrollTop = i * rowH;
    else if ((i + 1) * rowH > s.scrollTop + s.clientHeight) s.scrollTop = (i + 1) * rowH - s.clientHeight;
    this.focusIndex = i;
    this.render();
    const entry = this.rendered.get(i);
    if (entry) focusable(entry.el).focus({ preventScroll: true });
  }

  // Dragging by the handle: a line shows where the row will land; near the
  // edges the list scrolls on.
  beginDrag(e, from, row) {
    if (e.button !== 0) return;
    e.preventDefault();
    const rowEl = e.target.closest('.row');
    const line = h('div', { class: 'drop-line' });
    this.scroller.append(line);
    rowEl.classList.add('dragging');
    const onMove = (m) => {
      this.drag.y = m.clientY;
      this.dragTo();
    };
    const onUp = () => this.endDrag(true);
    window.addEventListener('pointermove', onMove);
    window.addEventListener('pointerup', onUp, { once: true });
    const timer = setInterval(() => this.autoScroll(), 30);
    this.drag = { from, to: from, row, rowEl, line, y: e.clientY, done: () => {
      window.removeEventListener('pointermove', onMove);
      window.removeEventListener('pointerup', onUp);
      clearInterval(timer);
      line.remove();
      rowEl.classList.remove('dragging');
    } };
    this.dragTo();
  }

  dragTo() {
    const d = this.drag;
    const rect = this.scroller.getBoundingClientRect();
    const rowH = this.rowHeight();
    const y = d.y - rect.top + this.scroller.scrollTop;
    d.to = Math.max(0, Math.min((this.count || 1) - 1, Math.floor(y / rowH)));
    d.line.style.transform = `translateY(${(d.to > d.from ? d.to + 1 : d.to) * rowH - 1}px)`;
  }

  autoScroll() {
    const rect = this.scroller.getBoundingClientRect();
    const edge = Math.min(48, rect.height / 4);
    const step = this.drag.y < rect.top + edge ? -12 : this.drag.y > rect.bottom - edge ? 12 : 0;
    if (step) {
      this.scroller.scrollTop += step;
      this.dragTo();
    }
  }

  endDrag(drop) {
    const d = this.drag;
    if (!d) return;
    this.drag = null;
    d.done();
    if (drop && d.to !== d.from) this.move(d.row, d.to, false);
    this.render();
  }
}

function focusable(el) {
  return el.querySelector('button.main') || el.querySelector('button, input') || el;
}
