// Search, outline, links and paths, open and close, light and dark. Without this script the page is complete except for
// the bar at its top and the outline beside it.
'use strict';
(() => {
  const byId = id => document.getElementById(id);
  const all = (selector, within = document) => Array.from(within.querySelectorAll(selector));
  const made = (tag, properties, ...children) => {
    const element = Object.assign(document.createElement(tag), properties);
    element.append(...children);
    return element;
  };
  const root = document.documentElement;
  // A document without components has no search field, no outline and no buttons to open and close.
  const search = byId('search');
  const found = byId('found');
  const cards = all('details.card');
  const nodes = all('.node');
  byId('bar').hidden = false;

  // Does the work in pieces while the page is idle.
  const whenIdle = work => {
    const later = window.requestIdleCallback || (go => setTimeout(() => go({timeRemaining: () => 8}), 50));
    later(function go(deadline) {
      do {
        if (!work())
          return;
      } while (deadline.timeRemaining() > 2);
      later(go);
    });
  };

  // --- Light and dark: follows the system until the switch is used ---
  const theme = byId('theme');
  const systemIsDark = matchMedia('(prefers-color-scheme: dark)');
  const showTheme = () => {
    const chosen = root.dataset.theme;
    theme.setAttribute('aria-checked', String(chosen ? chosen === 'dark' : systemIsDark.matches));
  };
  theme.addEventListener('click', () => {
    root.dataset.theme = theme.getAttribute('aria-checked') === 'true' ? 'light' : 'dark';
    showTheme();
  });
  systemIsDark.addEventListener('change', showTheme);
  showTheme();
  theme.hidden = !CSS.supports('color', 'light-dark(#000000, #ffffff)'); // older browsers stay light

  // --- Exact numbers in place of those with prefixes ---
  const exact = byId('exact');
  exact?.addEventListener('click', () => {
    const on = exact.getAttribute('aria-checked') !== 'true';
    exact.setAttribute('aria-checked', String(on));
    root.dataset.numbers = on ? 'exact' : 'prefixed';
  });

  // --- Open and close ---
  const onClick = (id, open) => byId(id)?.addEventListener('click', () => cards.forEach(card => { card.open = open; }));
  onClick('open', true);
  onClick('close', false);

  // Scrolls to an element. What is far away has only an estimated size until the browser comes near, so that the element
  // may move; then it scrolls again.
  const behavior = nodes.length > 500 ? 'instant' : 'auto';
  const goTo = (element, block, tries = 5) => {
    element.scrollIntoView({block, behavior});
    if (behavior !== 'instant' || tries === 0)
      return;
    requestAnimationFrame(() => requestAnimationFrame(() => {
      const box = element.getBoundingClientRect();
      if (box.top < 0 || box.top > innerHeight - 40)
        goTo(element, block, tries - 1);
    }));
  };

  // A link opens what is around its target, and reveals what the search has hidden.
  const linked = () => {
    const fragment = location.hash.slice(1);
    try {
      return byId(fragment) || byId(decodeURIComponent(fragment));
    } catch { // the fragment of the address may be any text
      return null;
    }
  };
  const reveal = () => {
    const target = linked();
    if (!target)
      return;
    if (search && target.closest('[hidden]')) {
      search.value = '';
      filter();
    }
    for (let outer = target.closest('details'); outer; outer = outer.parentElement.closest('details'))
      outer.open = true;
    goTo(target, target.matches('.card') ? 'start' : 'center');
    followed = target.closest('.card');
    setCurrent(followed);
  };
  addEventListener('hashchange', reveal);

  // Printed pages show everything.
  const onPaper = matchMedia('print');
  let closed = [];
  const unfold = () => {
    if (closed.length === 0) {
      closed = all('details:not([open])');
      closed.forEach(details => { details.open = true; });
    }
  };
  const foldAgain = () => {
    closed.forEach(details => { details.open = false; });
    closed = [];
  };
  addEventListener('beforeprint', unfold);
  addEventListener('afterprint', foldAgain);
  onPaper.addEventListener('change', () => { (onPaper.matches ? unfold : foldAgain)(); });

  // --- A link and a button to copy the path, in each node and component ---
  const titleOf = item => item.querySelector(item.matches('.card') ? 'h3' : 'h4 bdi')?.textContent || pathOf(item);
  // An identifier is the path, encoded; in a comparison it begins with + if only the second document has the object.
  const pathOf = item => decodeURIComponent(item.id).replace(/^\+/, '');
  const link = made('a', {className: 'to', textContent: '#'});
  const button = made('button', {type: 'button', className: 'copy', textContent: 'copy path'});
  const toolsOf = item => {
    const to = link.cloneNode(true);
    const copy = button.cloneNode(true);
    const title = titleOf(item);
    to.href = '#' + item.id;
    to.title = pathOf(item);
    to.setAttribute('aria-label', 'Link to ' + title);
    copy.setAttribute('aria-label', 'Copy path of ' + title);
    return [to, copy];
  };
  const equip = item => {
    const isCard = item.matches('.card');
    const holder = isCard ? item.lastElementChild : item.firstElementChild;
    if (isCard && !holder.firstElementChild?.matches('.place'))
      holder.prepend(made('div', {className: 'place'}, ...toolsOf(item)));
    else if (!isCard && !holder.querySelector(':scope > .to'))
      holder.append(...toolsOf(item));
  };
  const items = cards.concat(nodes);
  const fewItems = 500;
  if (items.length <= fewItems) {
    items.forEach(equip);
  } else { // a large document is shown first
    let next = 0;
    whenIdle(() => {
      for (const end = Math.min(next + 50, items.length); next < end; ++next)
        equip(items[next]);
      return next < items.length;
    });
  }

  const toClipboard = async text => {
    try {
      await navigator.clipboard.writeText(text);
    } catch { // not allowed, or an older browser
      const field = made('textarea', {value: text, readOnly: true, className: 'unseen'});
      document.body.append(field);
      field.select();
      document.execCommand('copy');
      field.remove();
    }
  };
  document.addEventListener('click', async event => {
    const copy = event.target.closest('.copy');
    if (!copy)
      return;
    const path = pathOf(copy.closest('[id]'));
    await toClipboard(path);
    copy.focus();
    copy.textContent = 'copied';
    found.value = 'Copied ' + path;
    setTimeout(() => {
      copy.textContent = 'copy path';
      if (found.value === 'Copied ' + path)
        found.value = '';
    }, 2000);
  });

  // --- The outline: components, and the nodes of the one that is on the screen ---
  const outline = byId('outline');
  const entries = new Map(); // by component
  const mostEntries = 500;
  const entryOf = item => made('li', {}, made('a', {href: '#' + item.id, textContent: titleOf(item)}));
  const listNodes = card => {
    const inside = all('.node', card);
    const list = made('ol', {}, ...inside.slice(0, 100).map(entryOf));
    if (inside.length > 100)
      list.append(made('li', {className: 'more', textContent: '\u2026 ' + (inside.length - 100) + ' more'}));
    return list;
  };
  let currentCard = null;
  let followed = null; // the component of the last link, until somebody scrolls
  const setCurrent = card => {
    if (card === currentCard)
      return;
    const last = entries.get(currentCard);
    last?.removeAttribute('aria-current');
    last?.querySelector('ol')?.remove();
    currentCard = card;
    const entry = entries.get(card);
    if (!entry)
      return;
    entry.setAttribute('aria-current', 'true');
    entry.append(listNodes(card));
    if (outline.scrollHeight > outline.clientHeight)
      outline.scrollTop = entry.offsetTop - 60;
  };
  if (outline && cards.length > 1) {
    const list = made('ol', {});
    const findings = byId('problems');
    if (findings)
      list.append(made('li', {}, made('a', {href: '#problems', textContent: findings.querySelector('h2').textContent})));
    for (const card of cards.slice(0, mostEntries)) {
      const entry = entryOf(card);
      const count = card.querySelector(':scope > summary .bad, :scope > summary .doubtful');
      if (count)
        entry.firstElementChild.append(count.cloneNode(true));
      entries.set(card, entry);
      list.append(entry);
    }
    if (cards.length > mostEntries)
      list.append(made('li', {className: 'more', textContent: '\u2026 ' + (cards.length - mostEntries) + ' more'}));
    outline.append(list);
    outline.hidden = false;
    outline.parentElement.classList.add('outlined');
    // The current component is the first one in the upper part of the screen.
    const seen = new Set();
    const observer = new IntersectionObserver(changes => {
      changes.forEach(change => (change.isIntersecting ? seen.add(change.target) : seen.delete(change.target)));
      setCurrent(followed || cards.find(card => seen.has(card)) || null);
    }, {rootMargin: '-70px 0px -60% 0px'});
    for (const scrolling of ['wheel', 'touchmove', 'keydown'])
      addEventListener(scrolling, () => { followed = null; }, {passive: true});
    entries.forEach((_, card) => observer.observe(card));
  }

  // --- Search ---
  // Searches values, identifiers and kinds, but not member names, which all objects of a kind share.
  const index = [];
  const shelves = all('.shelf');
  const addToIndex = card => {
    const entry = {card, text: '', shown: true, groups: []};
    let target = entry; // in page order, texts of the component itself precede its nodes
    const texts = [];
    const finish = () => { target.text = texts.splice(0).join('\n').toLowerCase(); };
    for (const part of card.querySelectorAll('bdi, .number, .prefixed, .unit, .word, .kind, .fold, .node')) {
      if (part.className === 'node') {
        finish();
        target = {node: part, text: '', shown: true, folds: []};
        // The nodes of a short list are in no group; then the component is shown or hidden as a whole.
        const element = part.parentElement.className === 'group' ? part.parentElement : null;
        if (entry.groups.length === 0 || entry.groups[entry.groups.length - 1].element !== element)
          entry.groups.push({element, shown: true, nodes: []});
        entry.groups[entry.groups.length - 1].nodes.push(target);
      } else if (part.className === 'fold') {
        target.folds?.push(part);
      } else {
        texts.push(part.textContent);
      }
    }
    finish();
    index.push(entry);
  };
  const makeIndex = () => {
    while (index.length < cards.length)
      addToIndex(cards[index.length]);
  };
  // Before it is needed, so that the first key is as fast as the others.
  if (search) {
    whenIdle(() => {
      if (index.length < cards.length)
        addToIndex(cards[index.length]);
      return index.length < cards.length;
    });
  }

  const plural = (count, word) => count + ' ' + word + (count === 1 ? '' : 's');
  const before = new Map(); // which details were open before the search opened or closed them
  const setOpen = (details, open) => {
    if (details.open === open)
      return;
    if (!before.has(details))
      before.set(details, details.open);
    details.open = open;
  };
  const putBack = details => {
    if (before.has(details))
      details.open = before.get(details);
  };
  const show = (entry, element, shown) => {
    if (entry.shown !== shown)
      element.hidden = !shown;
    entry.shown = shown;
  };
  let matches = [];
  let current = -1;
  let marked = null;
  const mark = node => {
    marked?.removeAttribute('aria-current');
    marked = node;
    marked?.setAttribute('aria-current', 'true');
  };

  // Highlights without changing the document, if the browser supports it; at most a few hundred.
  const rangesIn = (element, words, most, ranges) => {
    const walker = document.createTreeWalker(element, NodeFilter.SHOW_TEXT);
    while (walker.nextNode() && ranges.length < most) {
      const text = walker.currentNode.data.toLowerCase();
      // If lower case changes the length, offsets in it do not match the text.
      if (text.length !== walker.currentNode.data.length || walker.currentNode.parentElement.closest('.name, .to, .copy'))
        continue;
      for (const word of words) {
        for (let at = text.indexOf(word); at >= 0; at = text.indexOf(word, at + word.length)) {
          const range = new Range();
          range.setStart(walker.currentNode, at);
          range.setEnd(walker.currentNode, at + word.length);
          ranges.push(range);
        }
      }
    }
  };
  const highlight = words => {
    if (!CSS.highlights)
      return;
    CSS.highlights.delete('found');
    if (words.length === 0)
      return;
    const ranges = [];
    const parts = matches.slice(0, 200).concat(index.filter(entry => entry.shown).slice(0, 200)
      .map(entry => entry.card.firstElementChild));
    parts.forEach(part => rangesIn(part, words, 500, ranges));
    CSS.highlights.set('found', new Highlight(...ranges));
  };

  const unfoldMatches = (entry, words) => {
    for (const fold of entry.folds) {
      const options = fold.lastElementChild.textContent.toLowerCase();
      const rest = all('bdi, .number', entry.node).filter(part => !fold.contains(part))
        .map(part => part.textContent).join('\n').toLowerCase();
      if (words.some(word => options.includes(word) ? !rest.includes(word) : false))
        setOpen(fold, true);
      else
        putBack(fold);
    }
  };

  // Opening thousands of components at once takes longer than anybody reads; those that stay closed show how much was
  // found in them.
  const mostOpened = 200;
  const filter = () => {
    const words = search.value.toLowerCase().split(/\s+/).filter(word => word !== '');
    makeIndex();
    mark(null);
    matches = [];
    current = -1;
    let cardCount = 0;
    let opened = 0;
    for (const entry of index) {
      const elsewhere = words.filter(word => !entry.text.includes(word)); // not in the texts of the component itself
      const whole = elsewhere.length === 0;
      let count = 0;
      for (const group of entry.groups) {
        const fitting = whole ? group.nodes
          : group.nodes.filter(inner => elsewhere.every(word => inner.text.includes(word)));
        if (group.element)
          show(group, group.element, fitting.length > 0);
        if (fitting.length === 0) // what is in a hidden group, or in a hidden component, need not be hidden itself
          continue;
        count += fitting.length;
        const fits = new Set(fitting);
        for (const inner of group.nodes) {
          show(inner, inner.node, fits.has(inner));
          if (!inner.shown)
            continue;
          matches.push(inner.node);
          if (matches.length <= mostOpened && inner.folds.length > 0)
            unfoldMatches(inner, elsewhere);
        }
      }
      show(entry, entry.card, whole || count > 0);
      cardCount += entry.shown ? 1 : 0;
      const summary = entry.card.firstElementChild;
      if (words.length > 0 && entry.shown && opened < mostOpened) {
        opened += Math.max(count, 1);
        setOpen(entry.card, true);
      } else if (words.length > 0 && !entry.shown) {
        setOpen(entry.card, false);
      } else {
        putBack(entry.card);
      }
      if (words.length > 0 && count > 0 && !entry.card.open)
        summary.dataset.found = count + ' found';
      else if (summary.dataset.found)
        delete summary.dataset.found;
      const listed = entries.get(entry.card);
      if (listed)
        listed.hidden = !entry.shown;
    }
    shelves.forEach(shelf => { shelf.hidden = !shelf.querySelector(':scope > .card:not([hidden])'); });
    if (words.length === 0) {
      before.forEach((open, details) => { details.open = open; });
      before.clear();
      found.value = '';
    } else if (cardCount === 0) {
      found.value = 'Nothing found';
    } else {
      found.value = plural(matches.length, 'node') + ' in ' + plural(cardCount, 'component');
    }
    highlight(words);
  };
  const clear = () => {
    search.value = '';
    filter();
  };

  // On to the next match, or back.
  const goToMatch = step => {
    if (search.value.trim() === '' || matches.length === 0)
      return;
    current = current < 0 ? (step < 0 ? matches.length - 1 : 0) : (current + step + matches.length) % matches.length;
    matches[current].closest('details').open = true;
    mark(matches[current]);
    goTo(matches[current], 'center');
    found.value = 'Node ' + (current + 1) + ' of ' + matches.length;
  };

  search?.addEventListener('input', filter);
  search?.addEventListener('keydown', event => {
    if (event.key === 'Escape') { // the first one ends the search, the second one leaves the field
      if (search.value === '')
        search.blur();
      else
        clear();
      event.preventDefault();
    } else if (event.key === 'Enter') {
      event.preventDefault();
      goToMatch(event.shiftKey ? -1 : 1);
    }
  });

  // --- Keys: / searches, arrows move among components and nodes ---
  const focus = item => {
    equip(item);
    mark(null);
    const target = item.querySelector(item.matches('.node') ? '.to' : 'summary');
    target.focus({preventScroll: true});
    goTo(item, item.matches('.card') ? 'nearest' : 'center');
  };
  const itemsInSight = () => all('.card:not([hidden]), .card[open]:not([hidden]) .node:not([hidden], [hidden] > *)');
  const move = (from, step) => {
    const inSight = itemsInSight();
    const at = inSight.indexOf(from);
    if (step < 0 && at <= 0)
      search.focus();
    else if (at + step < inSight.length)
      focus(inSight[at + step]);
  };
  // From the search, the first key leads to a node that was found.
  const enter = () => {
    if (search.value.trim() !== '' && matches.length > 0)
      focus(matches[Math.max(current, 0)]);
    else
      move(null, 1);
  };
  const onArrow = (key, item) => {
    if (key === 'ArrowDown' || key === 'ArrowUp')
      move(item, key === 'ArrowDown' ? 1 : -1);
    else if (item.matches('.card'))
      item.open = key === 'ArrowRight';
    else if (key === 'ArrowLeft')
      focus(item.closest('.card'));
  };
  if (search) {
    document.addEventListener('keydown', event => {
      if (event.ctrlKey || event.metaKey || event.altKey || event.shiftKey)
        return;
      const inField = event.target === search;
      const item = event.target.closest?.('.card > summary, .card > .inside > .place')?.parentElement.closest('.card')
        || event.target.closest?.('.node');
      if (event.key === '/' && !inField) {
        search.focus();
        search.select();
      } else if (inField && event.key === 'ArrowDown') {
        enter();
      } else if (item && event.key.startsWith('Arrow')) {
        onArrow(event.key, item);
      } else if (item && event.key === 'Escape') {
        search.focus();
      } else {
        return;
      }
      event.preventDefault();
    });
  }
  reveal();
})();
