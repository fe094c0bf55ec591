// The device's screen: where the person is in the browse tree (kept in the
// address, so back and reload work), the list shown there, the context
// menu, the now-playing bar, and the stream that keeps them all current.
import { h, icon } from './dom.js';
import { rows as fetchRows, titleOf, value, setData, text, plain, answeredPath } from './api.js';
import { start, onStatus, watch } from './live.js';
import { t, setLanguage, language } from './words.js';
import { ListView } from './list.js';
import { Menu } from './menu.js';
import { NowPlaying } from './player.js';
import { textInput } from './rows.js';

// The modules whose trees the home shows; a module that is not loaded
// answers 404 and is left out.
const ROOTS = ['playlists:/root', 'library:/root'];
const QUERY_DELAY_MS = 150;

const $ = (id) => document.getElementById(id);

// A place in the tree: a list's path, or the answer to a query typed into
// an input row (whose path and text are kept to show the field again).
function encodeCrumb(c) {
  return c.query ? [c.path, c.query.path, c.query.text].map(encodeURIComponent).join(',') : encodeURIComponent(c.path);
}

// A query's place is named by the input it was typed into.
const titleKey = (c) => (c.query ? c.query.path : c.path);

function decodeCrumb(part) {
  const [path, queryPath, queryText] = part.split(',').map(decodeURIComponent);
  return queryPath === undefined ? { path } : { path, query: { path: queryPath, text: queryText || '' } };
}

class App {
  constructor() {
    this.crumbs = [];
    this.titles = new Map();
    this.roots = [];
    this.view = null;
    this.menuView = new Menu();
    this.player = new NowPlaying(this);
    $('lang').addEventListener('change', (e) => this.chooseLanguage(e.target.value));
    $('home').addEventListener('click', () => this.go([]));
    addEventListener('hashchange', () => this.route());
  }

  async boot() {
    onStatus((online, recovered) => {
      $('offline').hidden = online;
      if (recovered) this.recover();
    });
    start();
    await watch('value', 'settings:/language', (e) => this.languageChanged(plain(e.value)));
    const [lang] = await Promise.all([value('settings:/language').catch(() => null), this.loadRoots()]);
    setLanguage(plain(lang) || 'en');
    $('lang').value = language();
    this.route();
    await this.player.start();
  }

  // Tree titles follow the language too: everything shown is fetched again.
  languageChanged(lang) {
    if (this.applyLanguage(lang)) this.refreshAll();
  }

  applyLanguage(lang) {
    if (!lang || lang === language()) return false;
    setLanguage(lang);
    $('lang').value = language();
    this.titles.clear();
    return true;
  }

  // Back after the host or the network was gone: whatever changed meanwhile,
  // the language included, was not announced.
  async recover() {
    this.applyLanguage(plain(await value('settings:/language').catch(() => null)));
    this.refreshAll();
    this.player.refresh();
  }

  refreshAll() {
    this.loadRoots();
    this.loadTitles();
    if (this.view) {
      // Rows whose data did not change still carry the app's own words.
      this.view.repaint();
      this.view.refresh();
    }
    if (this.menuView.isOpen()) this.menuView.reload();
    this.player.relabel();
    this.player.refresh();
  }

  async chooseLanguage(lang) {
    try {
      await setData('settings:/language', text(lang));
    } catch (error) {
      $('lang').value = language();
      if (this.view) this.view.showError(error.message);
    }
  }

  async loadRoots() {
    const found = await Promise.all(ROOTS.map((path) => titleOf(path).catch(() => null)));
    this.roots = found.map((title, i) => title !== null && { title, path: ROOTS[i], type: 'container' }).filter(Boolean);
    this.renderSources();
    if (!this.crumbs.length && this.view) this.view.refresh();
  }

  renderSources() {
    const current = this.crumbs[0] && this.crumbs[0].path;
    $('sources').replaceChildren(
      ...this.roots.map((root) =>
        h('button', { type: 'button', class: 'source', 'aria-current': root.path === current ? 'page' : null, onclick: () => this.go([{ path: root.path }]) }, icon('folder'), h('span', { dir: 'auto', text: root.title ?? '' }))
      )
    );
  }

  // The address holds the way from home to the list shown.
  go(crumbs, replace) {
    const hash = '#' + crumbs.map(encodeCrumb).join('/');
    if (replace) {
      history.replaceState(null, '', hash);
      this.route();
    } else if (location.hash !== hash) {
      location.hash = hash;
    } else {
      this.route();
    }
  }

  route() {
    const parts = location.hash.replace(/^#/, '').split('/').filter(Boolean);
    let crumbs;
    try {
      crumbs = parts.map(decodeCrumb);
    } catch {
      crumbs = [];
    }
    const last = crumbs[crumbs.length - 1];
    const shown = this.crumbs[this.crumbs.length - 1];
    // Typing may have gone on while the answer to a query was on its way.
    const field = document.activeElement;
    const typing = field && field.type === 'search' ? field.value : null;
    this.crumbs = crumbs;
    if (!last || !shown || last.path !== shown.path || !this.view) this.show(last);
    this.renderQuery(last, typing);
    this.loadTitles();
    this.renderSources();
  }

  show(crumb) {
    if (this.view) {
      this.view.destroy();
      this.view.el.remove();
    }
    this.menuView.close();
    const source = crumb
      ? { path: crumb.path, load: (from, to) => fetchRows(crumb.path, from, to) }
      : { title: t('home'), load: async () => ({ rows: this.roots, rowsCount: this.roots.length }) };
    const opened = !!this.view;
    this.view = new ListView(source, this);
    // Only the list is replaced: a query's field keeps the focus and what is typed.
    $('view').append(this.view.el);
    this.view.start(opened);
  }

  // The field of a query stays while its answers change under it, so typing
  // is never interrupted.
  renderQuery(crumb, typing) {
    const query = crumb && crumb.query;
    if (!query) {
      if (this.queryBar) this.queryBar.remove();
      this.queryBar = null;
      return;
    }
    if (this.queryBar && this.queryBar.dataset.path === query.path) return;
    const row = { path: query.path, title: this.titles.get(query.path) || '', type: 'input', value: text(query.text) };
    const form = textInput(row, { onQuery: (q) => this.query(row, q) });
    this.queryBar = h('div', { class: 'query', 'data-path': query.path }, form);
    $('view').prepend(this.queryBar);
    const field = form.querySelector('input');
    if (typing !== null && typing !== query.text) {
      field.value = typing;
      this.query(row, typing);
    }
    field.focus();
    field.setSelectionRange(field.value.length, field.value.length);
  }

  // Titles of the places on the way; the list shown names its own.
  async loadTitles() {
    const crumbs = this.crumbs;
    await Promise.all(
      crumbs.map(async (c) => {
        const key = titleKey(c);
        if (this.titles.has(key)) return;
        const title = await titleOf(key).catch(() => undefined);
        if (title !== undefined) this.titles.set(key, title);
      })
    );
    if (crumbs === this.crumbs) this.renderCrumbs();
  }

  renderCrumbs() {
    const items = [h('li', {}, h('button', { type: 'button', onclick: () => this.go([]), 'aria-current': this.crumbs.length ? null : 'page' }, t('home')))];
    this.crumbs.forEach((c, i) => {
      const title = this.titles.get(titleKey(c)) ?? '…';
      const last = i === this.crumbs.length - 1;
      items.push(h('li', {}, h('button', { type: 'button', dir: 'auto', 'aria-current': last ? 'page' : null, onclick: () => this.go(this.crumbs.slice(0, i + 1)) }, title)));
    });
    $('crumbs').replaceChildren(...items);
    // On a narrow screen the way scrolls; where you are stays in sight.
    $('crumbs').scrollLeft = $('crumbs').scrollWidth;
    const label = this.crumbs.length ? this.titles.get(titleKey(this.crumbs[this.crumbs.length - 1])) : t('home');
    if (this.view && label !== undefined) this.view.scroller.setAttribute('aria-label', label);
  }

  // Called by the list shown with the title its rows came with.
  titled(view, title) {
    const crumb = this.crumbs[this.crumbs.length - 1];
    if (view !== this.view || !crumb || crumb.query || this.titles.get(crumb.path) === title) return;
    this.titles.set(crumb.path, title);
    this.renderCrumbs();
  }

  open(path, title) {
    if (title !== undefined && !this.titles.has(path)) this.titles.set(path, title);
    this.go([...this.crumbs, { path }]);
  }

  // What is typed into a query row is sent after a short pause; its answer
  // replaces the previous answer of the same query instead of piling up.
  query(row, q) {
    clearTimeout(this.queryTimer);
    this.queryTimer = setTimeout(async () => {
      const base = this.crumbs.filter((c) => !(c.query && c.query.path === row.path));
      try {
        const target = answeredPath(await setData(row.path, text(q)));
        if (!target) return;
        if (!this.titles.has(row.path)) this.titles.set(row.path, row.title);
        this.go([...base, { path: target, query: { path: row.path, text: q } }], base.length !== this.crumbs.length);
      } catch (error) {
        if (this.view) this.view.showError(error.message);
      }
    }, QUERY_DELAY_MS);
  }

  async play(container, track, index) {
    try {
      await setData('player:/control', { control: 'play', index, container, track });
    } catch (error) {
      this.view.showError(error.message);
    }
  }

  menu(context, anchor) {
    this.menuView.open(context, anchor);
  }

  playingPath() {
    return this.player.playingPath();
  }

  playingChanged() {
    if (this.view) this.view.repaint();
  }
}

new App().boot();
