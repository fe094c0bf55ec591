// One row of the browse tree, drawn from its roles alone: lists and menus of
// any module look alike without code of their own.
import { h, icon, safeImageUrl, formatTime } from './dom.js';
import { plain, pathParams, text, bool } from './api.js';
import { t } from './words.js';

const TYPE_NAMES = { 1: 'container', 2: 'audio', 101: 'input', 102: 'action', 103: 'header', 105: 'separator' };

export function typeOf(row) {
  const type = row && row.type;
  return TYPE_NAMES[type] || type || 'none';
}

export function subtitleOf(row) {
  const meta = (row.mediaData && row.mediaData.metaData) || {};
  return [meta.artist, meta.album].filter(Boolean).join(' — ') || row.description || '';
}

function durationOf(row) {
  const resource = row.mediaData && row.mediaData.resources && row.mediaData.resources[0];
  return resource && resource.duration > 0 ? formatTime(resource.duration * 1000) : '';
}

// An input that names a node of its own rather than a command on one (no
// parameters): what is typed is a query, and the answer is where to look.
function isQuery(row) {
  return typeOf(row) === 'input' && !String(row.path || '').includes('?') && typeof plain(row.value) === 'string';
}

export function artwork(url, cls) {
  const src = safeImageUrl(url);
  const box = h('span', { class: cls || 'art', 'aria-hidden': 'true' });
  if (src) box.append(h('img', { src, alt: '', loading: 'lazy', decoding: 'async' }));
  return box;
}

function labelled(row) {
  const sub = subtitleOf(row);
  return h('span', { class: 'label' }, h('span', { class: 'title', dir: 'auto', text: row.title ?? '' }), sub ? h('span', { class: 'sub', dir: 'auto', text: sub }) : null);
}

// A text input row: a field that sends what was typed on Enter, or as it
// is typed for queries.
export function textInput(row, { onSubmit, onQuery }) {
  const id = 'in-' + Math.random().toString(36).slice(2);
  const field = h('input', {
    id,
    type: onQuery ? 'search' : 'text',
    dir: 'auto',
    enterkeyhint: onQuery ? 'search' : 'done',
    autocomplete: 'off',
    placeholder: row.title ?? '',
  });
  field.value = plain(row.value) || '';
  const form = h(
    'form',
    { class: 'input-row' },
    h('label', { for: id, class: 'title', dir: 'auto', text: row.title ?? '' }),
    field,
    onQuery ? null : h('button', { type: 'submit', class: 'icon-button', 'aria-label': t('send') }, icon('enter'))
  );
  form.addEventListener('submit', (e) => {
    e.preventDefault();
    if (onQuery) onQuery(field.value);
    else onSubmit(text(field.value), field);
  });
  if (onQuery) field.addEventListener('input', () => onQuery(field.value));
  return form;
}

export function switchInput(row, onSubmit, role) {
  const on = plain(row.value) === true;
  return h(
    'button',
    {
      type: 'button',
      role: role || 'switch',
      class: 'switch-row',
      'aria-checked': String(on),
      onclick: (e) => onSubmit(bool(!on), e.currentTarget),
    },
    h('span', { class: 'title', dir: 'auto', text: row.title ?? '' }),
    h('span', { class: 'switch', 'aria-hidden': 'true' })
  );
}

// The inside of a list row. actions: open(row), play(row), menu(row, anchor),
// command(row, value, anchor), query(row, text).
export function rowContent(row, actions) {
  const type = typeOf(row);
  if (type === 'header') return [h('span', { class: 'heading', role: 'heading', 'aria-level': '2', dir: 'auto', text: row.title ?? '' })];
  if (type === 'separator') return [h('hr', { 'aria-hidden': 'true' })];
  if (type === 'input') {
    if (typeof plain(row.value) === 'boolean') return [switchInput(row, (v, el) => actions.command(row, v, el))];
    return [
      textInput(row, {
        onSubmit: (v, el) => actions.command(row, v, el),
        onQuery: isQuery(row) ? (q) => actions.query(row, q) : null,
      }),
    ];
  }
  if (type === 'action') {
    return [h('button', { type: 'button', class: 'main action', dir: 'auto', onclick: (e) => actions.command(row, null, e.currentTarget) }, row.title ?? '')];
  }
  const opens = type === 'container' && row.path;
  const main = h(
    'button',
    {
      type: 'button',
      class: 'main',
      onclick: (e) => (opens ? actions.open(row) : type === 'audio' ? actions.play(row, e.currentTarget) : null),
      'aria-haspopup': type === 'audio' && !actions.canPlay(row) && row.context ? 'menu' : null,
    },
    row.icon ? artwork(row.icon) : h('span', { class: 'art', 'aria-hidden': 'true' }, icon(type === 'audio' ? 'note' : 'folder')),
    labelled(row),
    h('span', { class: 'duration', text: durationOf(row) }),
    opens ? icon('chevron') : null
  );
  const parts = [main];
  if (row.context && row.context.path) {
    parts.push(
      h('button', { type: 'button', class: 'icon-button', 'aria-label': t('more'), 'aria-haspopup': 'menu', onclick: (e) => actions.menu(row, e.currentTarget) }, icon('more'))
    );
  }
  return parts;
}

// Where a row of a playlist or the queue sits, when it can be moved.
export function moveTarget(row) {
  const context = row && row.context && row.context.path;
  if (!context || !context.startsWith('playlists:/menu/track?')) return null;
  const params = pathParams(context);
  if (!params.has('plid') || !params.has('seqnum')) return null;
  const plid = Number(params.get('plid'));
  const seqnum = Number(params.get('seqnum'));
  return Number.isInteger(plid) && Number.isInteger(seqnum) ? { plid, seqnum } : null;
}
