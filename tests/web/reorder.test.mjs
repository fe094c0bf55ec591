// Reordering the queue by dragging a row's handle and from the keyboard.
import assert from 'node:assert/strict';
import { scenario, row, shownTitles, until } from './harness.mjs';

const TITLES = ['One', 'Two', 'Three', 'Four', 'Five', 'Six'];

scenario('reorder the queue by drag and drop and by keyboard', { dark: true, shot: 'reorder-desktop-dark' }, async ({ host, open }) => {
  await host.addTracks(0, TITLES);
  const page = await open({ hash: '#' + ['playlists:/root', 'playlists:/queue'].map(encodeURIComponent).join('/') });
  await row(page, 'Six').waitFor();

  // "One" dropped on the fourth row lands there.
  const handle = await row(page, 'One').getByRole('button', { name: /^Move/ }).boundingBox();
  const target = await row(page, 'Four').boundingBox();
  await page.mouse.move(handle.x + handle.width / 2, handle.y + handle.height / 2);
  await page.mouse.down();
  await page.mouse.move(handle.x + handle.width / 2, target.y + target.height / 2, { steps: 8 });
  await page.mouse.up();
  const dragged = ['Two', 'Three', 'Four', 'One', 'Five', 'Six'];
  await until(async () => JSON.stringify(await shownTitles(page)) === JSON.stringify(dragged));
  assert.deepEqual(await host.titles('playlists:/queue'), dragged);

  // Alt+Up twice takes "Six" two places up, and the focus goes with it.
  await row(page, 'Six').getByRole('button').nth(1).focus();
  await page.keyboard.press('Alt+ArrowUp');
  await page.keyboard.press('Alt+ArrowUp');
  const keyed = ['Two', 'Three', 'Four', 'Six', 'One', 'Five'];
  await until(async () => JSON.stringify(await shownTitles(page)) === JSON.stringify(keyed));
  assert.deepEqual(await host.titles('playlists:/queue'), keyed);
  assert.equal(await page.evaluate(() => document.activeElement.closest('.row').querySelector('.title').textContent), 'Six');

  // Arrows walk the rows; a drop where it started changes nothing.
  await page.keyboard.press('ArrowDown');
  assert.equal(await page.evaluate(() => document.activeElement.closest('.row').querySelector('.title').textContent), 'One');
  await row(page, 'One').getByRole('button', { name: /^Move/ }).click();
  assert.deepEqual(await host.titles('playlists:/queue'), keyed);
});
